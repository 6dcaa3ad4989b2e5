#pragma once

#include <initializer_list>
#include <random>

// Numbers that are the same in each run.
class Dice {
public:
    explicit Dice(unsigned seed) : m_generator(seed) {}
    int operator()(int low, int high) {
        return low + static_cast<int>(m_generator() % static_cast<unsigned>(high - low + 1));
    }
    template <typename Value>
    Value operator()(std::initializer_list<Value> values) {
        return values.begin()[(*this)(0, static_cast<int>(values.size()) - 1)];
    }

private:
    std::mt19937 m_generator;
};
