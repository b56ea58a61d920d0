// Defect: data race inside a templated class.
// Two std::threads call corr::sample::Accumulator<double, 4>::add() on the
// same object without a lock. The call goes through a chain of templated
// Level<N>::descend() functions so the racing stacks are deep (8+ frames)
// and full of templated, namespaced names.
#include <cstdio>
#include <memory>
#include <thread>
#include <vector>

namespace corr {
namespace sample {

template <typename T, int Slots>
class Accumulator {
public:
    void add(const T &value, int slot)
    {
        totals_[slot % Slots] += value;     // unsynchronised update
        ++count_;
    }
    T total() const
    {
        T t{};
        for (int i = 0; i < Slots; ++i)
            t += totals_[i];
        return t;
    }

private:
    T totals_[Slots] = {};
    long count_ = 0;
};

template <int Depth>
struct Level {
    template <typename Acc>
    static void descend(Acc &acc, int slot)
    {
        Level<Depth - 1>::descend(acc, slot);
    }
};

template <>
struct Level<0> {
    template <typename Acc>
    static void descend(Acc &acc, int slot)
    {
        acc.add(1.5, slot);
    }
};

template <typename Acc>
void worker(Acc *acc, int rounds)
{
    for (int i = 0; i < rounds; ++i)
        Level<8>::descend(*acc, i);
}

} // namespace sample
} // namespace corr

int main()
{
    using Acc = corr::sample::Accumulator<double, 4>;
    // Heap object: DRD does not check stack variables by default.
    auto acc = std::make_unique<Acc>();
    std::vector<std::thread> threads;
    for (int i = 0; i < 2; ++i)
        threads.emplace_back(corr::sample::worker<Acc>, acc.get(), 100);
    for (auto &t : threads)
        t.join();
    std::printf("total = %.1f\n", acc->total());
    return 0;
}
