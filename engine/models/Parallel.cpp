#include "engine/models/Parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace engine {
namespace {

thread_local bool isInside = false;

// The calls of one InParallel, shared by its threads.
class Calls {
public:
    Calls(std::size_t count, std::function<void(std::size_t)> const &work) : m_count(count), m_work(work) {}

    // Runs calls until none is left; `afterEach` gets the part that has been begun.
    template <typename AfterEach>
    void Run(AfterEach afterEach) {
        auto const outer = std::exchange(isInside, true);
        try {
            for (auto call = m_next++; call < m_count; call = m_next++) {
                m_work(call);
                afterEach(static_cast<double>(call + 1) / static_cast<double>(m_count));
            }
        } catch (...) {
            std::lock_guard const lock(m_mutex);
            if (!m_failure)
                m_failure = std::current_exception();
            m_next = m_count;
        }
        isInside = outer;
    }

    void ThrowFailure() const {
        if (m_failure)
            std::rethrow_exception(m_failure);
    }

private:
    std::size_t m_count;
    std::function<void(std::size_t)> const &m_work;
    std::atomic<std::size_t> m_next = 0;
    std::mutex m_mutex;
    std::exception_ptr m_failure;
};

} // namespace

void InParallel(std::size_t count, std::function<void(std::size_t)> const &work, Progress const &progress) {
    Calls calls(count, work);
    {
        auto const threads = isInside ? 1 : std::min<std::size_t>(count, std::thread::hardware_concurrency());
        std::vector<std::jthread> helpers;
        for (std::size_t i = 1; i < threads; ++i)
            helpers.emplace_back([&] { calls.Run([](double) {}); });
        calls.Run([&](double part) { progress.Report(part); });
    }
    calls.ThrowFailure();
}

} // namespace engine
