#ifndef UNITFLOW_TESTS_PATTERNS_RANDOM_H
#define UNITFLOW_TESTS_PATTERNS_RANDOM_H

#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <random>

namespace patterns {

/// Draws the same for the same seed on every machine. Kept apart from the standard library's
/// distributions, which differ from one library to the next.
class Random {
public:
    explicit Random(std::uint64_t seed) : engine(seed) {}

    int below(int bound) { return int(engine() % std::uint64_t(bound)); }
    int between(int least, int most) { return least + below(most - least + 1); }
    bool oneIn(int count) { return below(count) == 0; }

    template <class List>
    auto oneOf(const List& list)
    {
        return *(std::begin(list) + below(int(std::size(list))));
    }

    template <class Type>
    Type pick(std::initializer_list<Type> choices)
    {
        return choices.begin()[below(int(choices.size()))];
    }

private:
    std::mt19937_64 engine;
};

} // namespace patterns

#endif
