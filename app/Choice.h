#pragma once

#include <CLI/CLI.hpp>

#include <map>
#include <string>

// Adds an option that takes one of several words.
template <typename Value>
CLI::Option *AddChoice(CLI::App &command, std::string const &name, Value &value,
                       std::map<std::string, Value> const &choices, std::string const &help) {
    return command
        .add_option_function<std::string>(
            name, [&value, choices](std::string const &word) { value = choices.at(word); }, help)
        ->check(CLI::IsMember(choices));
}
