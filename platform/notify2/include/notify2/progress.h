#pragma once
// The reporting interfaces of long operations: a worker reports progress and
// status through IProgress and messages through IMessenger, and never touches
// a window. Implementations decide where reports go (the GUI bridges, a
// console, nowhere).
#include <string>

namespace notify2 {

// Progress of one operation. The slot order below is part of the interface:
// implementations in other modules are called through it.
class IProgress
{
public:
    // Starts a phase: shows text and makes total the amount that is 100 %;
    // the position goes back to 0.
    virtual void begin(const std::wstring& text, double total) = 0;
    // One step of the given amount; by default the same as progressed().
    virtual void step(double amount) { progressed(amount); }
    // Advances the position by amount (never beyond the total).
    virtual void progressed(double amount) = 0;
    // Replaces the status text.
    virtual void set_status(const std::wstring& text) = 0;
    // Two events without arguments whose meaning the caller and the listener
    // agree on. Convention of this platform: the first means "the operation
    // has ended" (raised by the outermost progress guard when it goes out of
    // scope); the second is free for a caller-defined event. Listeners see
    // them as the signals notify_first and notify_second of the bridge.
    virtual void raise_first() = 0;
    virtual void raise_second() = 0;
    // The amount that is 100 % in the current phase.
    virtual double get_total() const = 0;
    // True once whoever watches the operation asked it to stop; a worker
    // polls this and ends early.
    virtual bool is_cancelled() const = 0;
    virtual ~IProgress();
};

} // namespace notify2
