#include "runctl2/client_context.h"

#include <mutex>

namespace runctl2 {
namespace {
std::mutex g_mutex;
std::shared_ptr<IClientContext> g_context;
} // namespace

std::shared_ptr<IClientContext> IClientContext::get()
{
    std::lock_guard<std::mutex> lock(g_mutex);
    return g_context;
}

void IClientContext::set(std::shared_ptr<IClientContext> context)
{
    std::lock_guard<std::mutex> lock(g_mutex);
    g_context = std::move(context);
}

std::wstring client_context_t::getString(const std::wstring& name) const
{
    const auto it = m_values.find(name);
    return it == m_values.end() ? std::wstring() : it->second;
}

} // namespace runctl2
