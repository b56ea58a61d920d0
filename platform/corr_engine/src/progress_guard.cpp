#include "corr_engine/progress_guard.h"

#include <algorithm>

namespace corr_engine {
namespace {

class child_progress_t final : public notify2::IProgress
{
public:
    child_progress_t(notify2::IProgress* parent, double span, double total)
        : m_parent(parent), m_span(std::max(0.0, span)), m_total(total)
    {
    }

    void begin(const std::wstring& text, double total) override
    {
        set_status(text);
        m_total = total;
        m_position = 0;
        m_range_start = m_forwarded;
    }

    void progressed(double amount) override
    {
        const double position = std::max(0.0, std::min(m_total, m_position + amount));
        if (position == m_position || !(m_total > 0))
            return;
        m_position = position;
        // Where the parent should stand, in span units, given this position.
        const double target = m_range_start + (m_span - m_range_start) * (m_position / m_total);
        const double delta = target - m_forwarded;
        if (delta > 0) {
            m_forwarded = target;
            if (m_parent)
                m_parent->progressed(delta);
        }
    }

    void set_status(const std::wstring& text) override
    {
        if (m_parent)
            m_parent->set_status(text);
    }
    void raise_first() override {}
    void raise_second() override
    {
        if (m_parent)
            m_parent->raise_second();
    }
    double get_total() const override { return m_total; }
    bool is_cancelled() const override { return m_parent && m_parent->is_cancelled(); }

private:
    notify2::IProgress* m_parent;
    double m_span;
    double m_total;
    double m_position = 0;
    double m_forwarded = 0;   // parent units passed on so far
    double m_range_start = 0; // parent units already used when the current range began
};

} // namespace

progress_guard_t::progress_guard_t(notify2::IProgress* progress, const std::wstring& text,
                                   double total)
    : m_progress(progress), m_outermost(progress && !dynamic_cast<child_progress_t*>(progress))
{
    if (m_progress)
        m_progress->begin(text, total);
}

progress_guard_t::~progress_guard_t()
{
    if (m_outermost)
        m_progress->raise_first();
}

void progress_guard_t::progressed(double amount)
{
    if (m_progress)
        m_progress->progressed(amount);
}

void progress_guard_t::set_status(const std::wstring& text)
{
    if (m_progress)
        m_progress->set_status(text);
}

bool progress_guard_t::is_cancelled() const
{
    return m_progress && m_progress->is_cancelled();
}

std::shared_ptr<notify2::IProgress> progress_guard_t::create_child(double span, double child_total)
{
    return std::make_shared<child_progress_t>(m_progress, span, child_total);
}

} // namespace corr_engine
