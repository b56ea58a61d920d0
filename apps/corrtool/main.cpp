// corrtool: imports analyser output into results, lists their problems and
// manages the suppressions that hide them.
#include "command.h"

#include <cerrno>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>

namespace {

// What went wrong, with the paths a file-system error names.
std::string describe(const std::exception& e)
{
    if (const auto* f = dynamic_cast<const std::filesystem::filesystem_error*>(&e)) {
        std::string out = f->code().message();
        for (const auto* p : {&f->path1(), &f->path2()})
            if (!p->empty())
                out += ": \"" + p->native() + "\"";
        return out;
    }
    return e.what();
}

void print_help(std::ostream& out)
{
    out << "Usage: corrtool <command> [arguments]\n\n"
           "Imports Valgrind XML and sanitizer reports into result folders, lists\n"
           "their problems and suppresses them.\n\nCommands:\n";
    for (const auto& c : corrtool::commands())
        out << "  " << c.usage << "\n      " << c.summary << "\n";
    out << "\n\"corrtool help <command>\" tells more about one command.\n"
           "Exit status: 0 done, 1 a check found something, 2 bad input or usage.\n";
}

const corrtool::command_t* find_command(const std::string& name)
{
    for (const auto& c : corrtool::commands())
        if (name == c.name)
            return &c;
    return nullptr;
}

void print_command_help(const corrtool::command_t& c, std::ostream& out)
{
    out << "Usage: corrtool " << c.usage << "\n\n" << c.summary << "\n";
    if (c.details && *c.details)
        out << "\n" << c.details;
}

int run(int argc, char** argv)
{
    if (argc < 2) {
        print_help(std::cerr);
        return corrtool::exit_error;
    }
    const std::string first = argv[1];
    if (first == "--help" || first == "-h") {
        print_help(std::cout);
        return corrtool::exit_ok;
    }
    if (first == "help") {
        if (argc < 3) {
            print_help(std::cout);
            return corrtool::exit_ok;
        }
        const auto* c = find_command(argv[2]);
        if (!c) {
            std::cerr << "corrtool: unknown command \"" << argv[2] << "\"\n";
            return corrtool::exit_error;
        }
        print_command_help(*c, std::cout);
        return corrtool::exit_ok;
    }
    const auto* command = find_command(first);
    if (!command) {
        std::cerr << "corrtool: unknown command \"" << first << "\" (see corrtool --help)\n";
        return corrtool::exit_error;
    }
    std::vector<std::string> args(argv + 2, argv + argc);
    for (const auto& a : args) {
        if (a == "--")
            break; // what follows belongs to the analysed program
        if (a == "--help" || a == "-h") {
            print_command_help(*command, std::cout);
            return corrtool::exit_ok;
        }
    }
    // Whatever the command did not handle is reported under its name.
    int status = corrtool::exit_error;
    try {
        status = command->run(args, std::cout, std::cerr);
    } catch (const std::exception& e) {
        std::cerr << "corrtool " << command->name << ": " << describe(e) << "\n";
    }
    // A full disk or a closed pipe must not look like success.
    errno = 0;
    std::cout.flush();
    if (!std::cout) {
        const int error = errno;
        std::cerr << "corrtool: cannot write the output"
                  << (error ? ": " + std::generic_category().message(error) : std::string()) << "\n";
        return corrtool::exit_error;
    }
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    // Nothing may end in std::terminate: whatever a command did not handle is
    // reported, and the exit status says bad input.
    try {
        return run(argc, argv);
    } catch (const std::exception& e) {
        std::cerr << "corrtool: " << describe(e) << "\n";
    } catch (...) {
        std::cerr << "corrtool: unexpected error\n";
    }
    return corrtool::exit_error;
}
