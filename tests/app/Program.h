#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

inline std::string Contents(std::filesystem::path const &file) {
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

// The fields of each line; for texts without quotes.
inline std::vector<std::vector<std::string>> Fields(std::string const &text) {
    std::vector<std::vector<std::string>> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.emplace_back();
        std::istringstream fields(line + ',');
        for (std::string field; std::getline(fields, field, ',');)
            lines.back().push_back(field);
    }
    return lines;
}

struct Outcome {
    int status;
    std::string out, error;
};

// Runs command lines of the program in a folder of their own, by a shell.
class Program : public ::testing::Test {
protected:
    Program() {
        std::string pattern = ::testing::TempDir() + "program-XXXXXX";
        folder = mkdtemp(pattern.data());
    }
    ~Program() override { std::filesystem::remove_all(folder); }

    Outcome Shell(std::string const &line) const {
        std::string const command = "cd " + folder.string() + " && { " + line + "; } > out 2> error";
        int const status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Contents(folder / "out"), Contents(folder / "error")};
    }
    Outcome Run(std::string const &arguments) const { return Shell(PROGRAM " " + arguments); }
    std::string Done(std::string const &arguments) const {
        Outcome const outcome = Run(arguments);
        EXPECT_EQ(outcome.status, 0) << arguments;
        EXPECT_EQ(outcome.error, "") << arguments;
        return outcome.out;
    }
    // Of the picture x.svg, which a command makes.
    std::string Script(std::string const &arguments) const {
        Outcome const outcome = Shell("mkdir -p bin; printf '#!/bin/sh\\ncat\\n' > bin/gnuplot; chmod +x bin/gnuplot; "
                                      "PATH=./bin:$PATH " PROGRAM " " +
                                      arguments);
        EXPECT_EQ(outcome.error, "") << arguments;
        return Contents(folder / "x.svg");
    }
    void Write(char const *name, char const *text) const { std::ofstream(folder / name) << text; }

    // 8 observations; row l,2 has a missing cell, row x3 nothing at all.
    void MakeProject() const {
        Write("a.csv", "id,a,b,\"c,d\",y\nx1,1,2,3.5,1\n\"l,2\",2,2.2,?,2\nx3,?,?,?,3\nx4,4,1,7,3\nx5,5,2,1,6\n"
                       "x6,3,5,6,1\nx7,2,3,1,9\nx8,1,7,7,4\n");
        Done("import a.project a.csv --missing '?'");
        Done("fit a.project --type pca --components 2 --cv-groups 0 --exclude y");
        Done("fit a.project --type pls --y y --components 1 --cv-groups 3");
    }

    std::filesystem::path folder;
};
