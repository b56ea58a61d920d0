#pragma once
// Messages from a long operation to whoever watches it.
#include <cstdint>
#include <string>

namespace notify2 {

// Message type bits. A type is a combination of these; listeners test bits
// (a type of 4 | 8 is an error and fatal).
enum message_type_t : std::uint32_t {
    msg_info = 1,    // informational
    msg_warning = 2, // something was skipped or is doubtful; the operation goes on
    msg_error = 4,   // a part of the operation failed
    msg_fatal = 8,   // the operation failed as a whole
};

// True when the type carries the warning bit.
inline bool is_warning(std::uint32_t type)
{
    return (type & msg_warning) != 0;
}
// True when the type carries the error or the fatal bit.
inline bool is_error(std::uint32_t type)
{
    return (type & (msg_error | msg_fatal)) != 0;
}

class IMessenger
{
public:
    // Reports one message. text may be null (an empty message). May be called
    // from any thread; implementations say where the message is delivered.
    virtual void message(std::uint32_t type, const wchar_t* text) = 0;
    virtual ~IMessenger();
};

} // namespace notify2
