#ifndef RANDOM_H
#define RANDOM_H

#include <QList>

#include <random>

/// Chance that comes out alike with every standard library: only the engine is the library's, whose numbers
/// are fixed, not its distributions, whose numbers are not.
class Random
{
public:
    explicit Random(quint64 seed)
        : m_engine(seed)
    {
    }

    /// A whole number from @a least to @a most, both included.
    int between(int least, int most)
    {
        if (most <= least)
            return least;
        return least + static_cast<int>(m_engine() % static_cast<quint64>(most - least + 1));
    }

    /// True once in @a times calls on average.
    bool oneIn(int times) { return between(1, times) == 1; }

    /// One of the elements of a list that has some.
    template <typename T>
    const T &among(const QList<T> &list)
    {
        return list.at(between(0, static_cast<int>(list.size()) - 1));
    }

private:
    std::mt19937_64 m_engine;
};

#endif
