#pragma once
// Bridges that carry progress and messages from a worker thread to the GUI
// thread. A worker reports through notify2::IProgress / IMessenger; the
// bridges re-emit what they receive as signals on the GUI thread through the
// wxkit1 task scheduler, merging bursts so that a fast worker cannot flood
// the event loop:
//   - percent (whole percents only) and status text: at most one pending
//     update each, delivered 250 ms after the first value of a burst, always
//     with the latest value;
//   - messages: batched, delivered 500 ms after the first of a batch, in
//     order; message_received also fires at once on the reporting thread;
//   - raise_first / raise_second: posted at once as notify_first /
//     notify_second; a worker calls the messenger's flush() before it
//     reports its end, so that its last messages arrive before the end.
// Create a bridge with create() on the GUI thread, connect to its signals,
// then hand it to the worker. The scheduler must be initialised.
#include "corr_dialogs2/export.h"

#include "basekit2/intrusive.h"
#include "basekit2/signal.h"
#include "notify2/messenger.h"
#include "notify2/progress.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <list>
#include <string>

namespace corr_engine {
class engine_t;
}

namespace corr_dialogs2 {

class CORR_DIALOGS2_API progress_bridge_t : public notify2::IProgress
{
public:
    // The bridge to hand to a worker; connect to its signals first.
    static boost::shared_ptr<progress_bridge_t> create();

    progress_bridge_t() = default;
    // Copies start without subscribers (see basekit2 signals).
    progress_bridge_t(const progress_bridge_t&) = default;
    progress_bridge_t& operator=(const progress_bridge_t&) = default;

    // Asks the worker to stop: is_cancelled() answers true from now on.
    virtual void cancel() = 0;

    // GUI thread: the progress in whole percent (0..100).
    basekit2::_internal::signal_t<int> percent_changed;
    // GUI thread: the latest status text.
    basekit2::_internal::signal_t<std::wstring> status_changed;
    // GUI thread: raise_first() was called (by convention: the work ended).
    basekit2::_internal::signal_t<> notify_first;
    // GUI thread: raise_second() was called.
    basekit2::_internal::signal_t<> notify_second;
};

// One message: its type bits (notify2::message_type_t) and its text.
struct message_data_t
{
    std::uint32_t type = 0;
    std::wstring text;
};

class CORR_DIALOGS2_API messenger_bridge_t : public notify2::IMessenger
{
public:
    using message_data_t = ::corr_dialogs2::message_data_t;

    static boost::shared_ptr<messenger_bridge_t> create();

    messenger_bridge_t() = default;
    messenger_bridge_t(const messenger_bridge_t&) = default;
    messenger_bridge_t& operator=(const messenger_bridge_t&) = default;

    // Any thread: hands the batch that waits for its delay to the GUI
    // thread now, ahead of whatever is posted after this call.
    virtual void flush() = 0;

    // GUI thread: the messages of up to half a second, in order of arrival.
    basekit2::_internal::signal_t<std::list<message_data_t>> messages_received;
    // Reporting thread, synchronously, for every message: subscribers must
    // not touch windows.
    basekit2::_internal::signal_t<const message_data_t&> message_received;
};

// Implemented by the host so that an export worker can load the result it
// exports. Copying copies nothing: the state belongs to the host's object.
class CORR_DIALOGS2_API load_result_callback_t
{
public:
    load_result_callback_t() = default;
    load_result_callback_t(const load_result_callback_t&) {}
    load_result_callback_t& operator=(const load_result_callback_t&) { return *this; }

    // Worker thread: loads the result, reporting through messenger; true
    // on success.
    virtual bool load(notify2::IMessenger& messenger) = 0;
    // The loaded engine (null before a successful load).
    virtual basekit2::intrusive_pointer_t<corr_engine::engine_t> get_engine() = 0;
    // The name of the result, known before loading.
    virtual std::wstring get_result_name() const = 0;
    // Any thread: asks a running load to stop.
    virtual void cancel() = 0;

    virtual ~load_result_callback_t();
};

} // namespace corr_dialogs2
