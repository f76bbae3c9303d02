#ifndef RANDOM_H
#define RANDOM_H

#include <cstddef>
#include <cstdint>
#include <iterator>

/// Random numbers that depend on the seed alone, so that a run can be repeated on every platform
/// (splitmix64).
class Random
{
public:
    explicit Random(uint64_t seed)
        : m_state(seed)
    {
    }

    uint64_t next()
    {
        m_state += 0x9e3779b97f4a7c15U;
        uint64_t mixed = m_state;
        mixed = (mixed ^ (mixed >> 30U)) * 0xbf58476d1ce4e5b9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94d049bb133111ebU;
        return mixed ^ (mixed >> 31U);
    }

    /// A number from 0 to @a limit - 1. The limit must not be 0.
    size_t below(size_t limit) { return static_cast<size_t>(next() % limit); }

    /// A number from @a min to @a max, or @a min when @a max is smaller.
    int between(int min, int max)
    {
        return max <= min ? min : min + static_cast<int>(below(static_cast<size_t>(max - min) + 1));
    }

    /// True once in @a times calls on average.
    bool oneIn(size_t times) { return below(times) == 0; }

    /// An element of a container, which must not be empty.
    template <typename Container>
    const auto &pick(const Container &values)
    {
        return *std::next(std::begin(values),
                          static_cast<ptrdiff_t>(below(static_cast<size_t>(std::size(values)))));
    }

private:
    uint64_t m_state;
};

#endif
