#include "runctl2/runner.h"

#include "platkit/strings/convert.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace runctl2 {
namespace {

using platkit::strings::wide_to_utf8;

const char* tool_of(analyser_t a)
{
    switch (a) {
    case analyser_t::memcheck:
        return "memcheck";
    case analyser_t::helgrind:
        return "helgrind";
    case analyser_t::drd:
        return "drd";
    case analyser_t::sanitizer:
        break;
    }
    return "";
}

bool executable(const basekit2::path_t& p)
{
    return p.is_regular_file() && ::access(p.utf8().c_str(), X_OK) == 0;
}

} // namespace

basekit2::path_t find_in_path(const std::string& name)
{
    if (name.find('/') != std::string::npos)
        return executable(basekit2::path_t::from_utf8(name)) ? basekit2::path_t::from_utf8(name) : basekit2::path_t();
    const char* path = std::getenv("PATH");
    std::string dirs = path ? path : "/usr/local/bin:/usr/bin:/bin";
    size_t start = 0;
    while (start <= dirs.size()) {
        size_t end = dirs.find(':', start);
        if (end == std::string::npos)
            end = dirs.size();
        const std::string dir = dirs.substr(start, end - start);
        start = end + 1;
        const auto candidate = basekit2::path_t::from_utf8((dir.empty() ? "." : dir) + "/" + name);
        if (executable(candidate))
            return candidate;
    }
    return {};
}

run_plan_t plan_run(const run_request_t& r)
{
    run_plan_t plan;
    const std::wstring id = r.type ? r.type->getId() : std::wstring(L"run");
    if (r.type && r.type->getAnalyser() == analyser_t::sanitizer) {
        plan.output = r.output_folder / basekit2::path_t(id + L"-report");
        plan.output_is_prefix = true;
        std::string options = "log_path=" + plan.output.utf8();
        for (const auto& o : r.type->getAnalyserOptions())
            options += ":" + o;
        plan.environment.push_back(r.type->getOptionsVariable() + "=" + options);
        plan.argv.push_back(r.program.utf8());
    } else {
        plan.output = r.output_folder / basekit2::path_t(id + L".xml");
        plan.argv = {"valgrind", std::string("--tool=") + tool_of(r.type ? r.type->getAnalyser() : analyser_t::memcheck),
                     "--xml=yes", "--xml-file=" + plan.output.utf8(), "--gen-suppressions=all",
                     "--log-file=" + (r.output_folder / basekit2::path_t(id + L".log")).utf8()};
        if (r.type)
            for (const auto& o : r.type->getAnalyserOptions())
                plan.argv.push_back(o);
        if (r.debug_mode == 2)
            plan.argv.insert(plan.argv.end(), {"--vgdb=yes", "--vgdb-error=1"});
        else if (r.debug_mode == 3)
            plan.argv.insert(plan.argv.end(), {"--vgdb=yes", "--vgdb-error=0"});
        plan.argv.push_back("--");
        plan.argv.push_back(r.program.utf8());
    }
    for (const auto& a : r.arguments)
        plan.argv.push_back(wide_to_utf8(a));
    for (const auto& [name, value] : r.environment)
        plan.environment.push_back(wide_to_utf8(name) + "=" + wide_to_utf8(value));
    return plan;
}

std::string command_text(const run_plan_t& plan)
{
    auto quote = [](const std::string& s) {
        if (!s.empty() && s.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-=./,:%+@") ==
                              std::string::npos)
            return s;
        std::string q = "'";
        for (char c : s)
            q += c == '\'' ? std::string("'\\''") : std::string(1, c);
        return q + "'";
    };
    std::string text;
    for (const auto& e : plan.environment)
        text += quote(e) + " ";
    for (size_t i = 0; i < plan.argv.size(); ++i)
        text += (i ? " " : "") + quote(plan.argv[i]);
    return text;
}

std::wstring check_request(const run_request_t& r)
{
    if (!r.type)
        return L"No analysis type was chosen.";
    if (r.program.empty())
        return L"No program was given.";
    if (!r.program.exists())
        return L"The program " + r.program.str() + L" does not exist.";
    if (!executable(r.program))
        return L"The program " + r.program.str() + L" is not an executable file.";
    if (!r.working_folder.empty() && !r.working_folder.is_directory())
        return L"The working folder " + r.working_folder.str() + L" does not exist.";
    if (r.type->getAnalyser() != analyser_t::sanitizer && find_in_path("valgrind").empty())
        return L"Valgrind is not installed: no valgrind program was found in PATH.";
    return {};
}

run_outcome_t run_analysis(const run_request_t& request, const std::function<bool()>& cancelled,
                           std::chrono::milliseconds grace)
{
    run_outcome_t outcome;
    outcome.error = check_request(request);
    if (!outcome.error.empty())
        return outcome;
    const run_plan_t plan = plan_run(request);

    // The inherited environment with the additions replacing what they name.
    std::vector<std::string> env;
    for (char** e = environ; e && *e; ++e) {
        const std::string entry = *e;
        const std::string name = entry.substr(0, entry.find('='));
        const bool replaced = std::any_of(plan.environment.begin(), plan.environment.end(),
                                          [&](const std::string& a) { return a.compare(0, name.size() + 1, name + "=") == 0; });
        if (!replaced)
            env.push_back(entry);
    }
    env.insert(env.end(), plan.environment.begin(), plan.environment.end());
    std::vector<char*> envp, argv;
    for (auto& e : env)
        envp.push_back(e.data());
    envp.push_back(nullptr);
    std::vector<std::string> args = plan.argv;
    if (args.front() == "valgrind")
        args.front() = find_in_path("valgrind").utf8();
    for (auto& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);

    posix_spawnattr_t attr;
    posix_spawnattr_init(&attr);
    posix_spawnattr_setflags(&attr, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    posix_spawnattr_setpgroup(&attr, 0);
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attr, &none);
    posix_spawnattr_setsigdefault(&attr, &all);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (!request.working_folder.empty())
        posix_spawn_file_actions_addchdir_np(&actions, request.working_folder.utf8().c_str());
    pid_t pid = 0;
    const int rc = posix_spawn(&pid, argv[0], &actions, &attr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attr);
    if (rc != 0) {
        outcome.error = L"Cannot start " + platkit::strings::utf8_to_wide(argv[0]) + L": " +
                        platkit::strings::utf8_to_wide(std::strerror(rc));
        return outcome;
    }
    outcome.started = true;

    int status = 0;
    auto term_sent = std::chrono::steady_clock::time_point();
    bool killed = false;
    for (;;) {
        const pid_t done = ::waitpid(pid, &status, WNOHANG);
        if (done == pid)
            break;
        if (done < 0 && errno != EINTR)
            break;
        if (!outcome.cancelled && cancelled && cancelled()) {
            outcome.cancelled = true;
            ::kill(-pid, SIGTERM);
            term_sent = std::chrono::steady_clock::now();
        }
        if (outcome.cancelled && !killed && std::chrono::steady_clock::now() - term_sent > grace) {
            ::kill(-pid, SIGKILL);
            killed = true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    // Whatever the program started in its group goes with it.
    ::kill(-pid, SIGKILL);
    if (WIFEXITED(status))
        outcome.exit_code = WEXITSTATUS(status);
    else if (WIFSIGNALED(status))
        outcome.signal = WTERMSIG(status);

    if (plan.output_is_prefix) {
        const std::string prefix = plan.output.leaf().empty() ? std::string() : plan.output.utf8();
        std::error_code ec;
        for (const auto& entry : std::filesystem::directory_iterator(request.output_folder.utf8(), ec)) {
            const auto p = basekit2::path_t::from_utf8(entry.path().native());
            if (p.utf8().rfind(prefix + ".", 0) == 0)
                outcome.outputs.push_back(p);
        }
        std::sort(outcome.outputs.begin(), outcome.outputs.end());
    } else if (plan.output.is_regular_file()) {
        outcome.outputs.push_back(plan.output);
    }
    return outcome;
}

} // namespace runctl2
