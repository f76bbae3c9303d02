#ifndef RANDOM_H
#define RANDOM_H

#include <array>
#include <cstddef>
#include <cstdint>

/// Numbers that follow from a seed alone, so that a run can be repeated (splitmix64).
class Random
{
public:
    explicit Random(uint64_t seed)
        : m_state(seed)
    {
    }

    uint64_t next();

    /// A number from 0 up to, but not including, @a limit, which must be above 0.
    size_t below(size_t limit) { return static_cast<size_t>(next() % limit); }

    bool oneIn(size_t chance) { return below(chance) == 0; }

    template <typename Container>
    const auto &pick(const Container &values)
    {
        return values[below(static_cast<size_t>(std::size(values)))];
    }

private:
    uint64_t m_state;
};

inline uint64_t Random::next()
{
    m_state += 0x9e3779b97f4a7c15U;
    uint64_t mixed = m_state;
    mixed = (mixed ^ (mixed >> 30U)) * 0xbf58476d1ce4e5b9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94d049bb133111ebU;
    return mixed ^ (mixed >> 31U);
}

#endif
