#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Centre values for groups of observations, such as sites or campaigns: what is subtracted from a variable's value,
// after its transformation and before it is centred about the mean of all, so that a model sees how an observation
// differs within its group. An observation's group is its text in one of the identifier columns.
struct LocalCenteringData {
    struct Variable {
        std::uint32_t number = 0;   // in the project
        std::vector<float> centres; // one for each group, in units of the transformed variable; -99 for none

        bool operator==(Variable const &) const = default;
    };

    std::string identifier; // heading of the identifier column
    std::vector<std::string> groups;
    std::vector<Variable> variables;

    int SizeVars() const { return static_cast<int>(variables.size()); }

    bool operator==(LocalCenteringData const &) const = default;
};

// Those that a model was made with; those of its project may have changed since.
using DefaultCenterValues = LocalCenteringData;
