#include "Injector.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

bool needsSpace(const Call& call)
{
    return call.limit == Limit::Space || call.limit == Limit::SpaceAndPart;
}

bool mayDoPart(const Call& call)
{
    return call.limit == Limit::Part || call.limit == Limit::SpaceAndPart;
}

Fault faultNamed(const std::string& name)
{
    struct Named {
        std::string_view name;
        Fault fault;
    };
    constexpr std::array kFaults{Named{"ENOSPC", Fault::NoSpace},      Named{"EIO", Fault::Broken},
                                 Named{"part", Fault::Part},           Named{"killBefore", Fault::KillBefore},
                                 Named{"killAfter", Fault::KillAfter}, Named{"gone", Fault::Gone}};
    const auto* found = std::ranges::find(kFaults, name, &Named::name);
    return found == kFaults.end() ? Fault::None : found->fault;
}

std::vector<std::string> parts(const std::string& text)
{
    std::vector<std::string> found;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(':', begin), text.size());
        found.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return found;
}

/// Decides for each call what becomes of it. It calls the system directly, past the functions below.
class Injector {
public:
    Fault faultFor(const Call& call)
    {
        const int errorBefore = errno;
        const std::scoped_lock lock(m_mutex);
        const Fault fault = decide(call);
        errno = errorBefore;
        return fault;
    }

private:
    Fault decide(const Call& call)
    {
        const std::string* root = rootOf(call.path);
        if (root == nullptr) {
            return Fault::None;
        }
        ++m_count;
        if (m_at == 0) {
            trace(call);
        }
        if (m_count == m_at) {
            trace(call);
            m_hitRoot = root;
        }
        const bool isHit = m_count == m_at || (m_goesOn && root == m_hitRoot);
        return isHit && canMeet(call) ? m_fault : Fault::None;
    }

    [[nodiscard]] const std::string* rootOf(const std::string& path) const
    {
        const auto holds = [&path](const std::string& root) {
            return path.starts_with(root) && (path.size() == root.size() || path[root.size()] == '/');
        };
        const auto found = std::ranges::find_if(m_roots, holds);
        return found == m_roots.end() ? nullptr : &*found;
    }

    [[nodiscard]] bool canMeet(const Call& call) const
    {
        return (m_fault != Fault::NoSpace || needsSpace(call)) && (m_fault != Fault::Part || mayDoPart(call));
    }

    void trace(const Call& call) const
    {
        const std::string line = std::to_string(m_count) + '\t' + (needsSpace(call) ? "s" : "") +
                                 (mayDoPart(call) ? "p" : "") + (call.limit == Limit::None ? "-" : "") + '\t' +
                                 call.name + '\t' + call.path + '\n';
        ::syscall(SYS_write, m_trace, line.data(), line.size());
    }

    std::mutex m_mutex;
    std::vector<std::string> m_roots = parts(variable("FAULTS_ROOTS"));
    Fault m_fault = faultNamed(variable("FAULTS_KIND"));
    unsigned long m_at = std::strtoul(variable("FAULTS_AT").c_str(), nullptr, 10);
    bool m_goesOn = !variable("FAULTS_ON").empty();
    int m_trace = static_cast<int>(::syscall(
        SYS_open, variable("FAULTS_TRACE").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, S_IRUSR | S_IWUSR));
    unsigned long m_count = 0;
    const std::string* m_hitRoot = nullptr;
};

Injector& injector()
{
    // Never destroyed: calls are made until the very end of the process.
    static auto& instance = *new Injector; // NOLINT(cppcoreguidelines-owning-memory)
    return instance;
}

} // namespace

Fault faultFor(const Call& call)
{
    return injector().faultFor(call);
}

std::string variable(const char* name)
{
    const char* value = ::getenv(name);
    return value == nullptr ? "" : value;
}
