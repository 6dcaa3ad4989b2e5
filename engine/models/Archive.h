#pragma once

#include "engine/models/Matrices.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace engine {

// A saved form is: four letters that name it, its version, the members in order, and a checksum over all that. Both
// archives have the same call operator, so that one function lists the members of a class for reading and writing:
//
//     template <typename Archive> void Transfer(Archive &archive, Term &term) { archive(term.column, ...); }

class WritingArchive {
public:
    WritingArchive(std::string_view name, std::uint32_t version);

    template <typename... Values>
    void operator()(Values &...values) {
        (Put(values), ...);
    }

    std::uint32_t Version() const { return m_version; }

    // The saved form, once.
    std::string Finish();

private:
    template <typename Value>
    void Put(Value &value) {
        if constexpr (std::is_arithmetic_v<Value> || std::is_enum_v<Value>)
            m_bytes.append(reinterpret_cast<char const *>(&value), sizeof(value));
        else
            Transfer(*this, value);
    }
    template <typename Value>
    void Put(std::vector<Value> &values) {
        auto size = static_cast<std::uint64_t>(values.size());
        Put(size);
        for (auto &value : values)
            Put(value);
    }
    template <typename Value>
    void Put(std::optional<Value> &value) {
        bool isThere = value.has_value();
        Put(isThere);
        if (isThere)
            Put(*value);
    }
    void Put(std::string &text) {
        auto size = static_cast<std::uint64_t>(text.size());
        Put(size);
        m_bytes.append(text);
    }
    template <typename Scalar, int R, int C, int O>
    void Put(Eigen::Matrix<Scalar, R, C, O> &matrix) {
        auto rows = static_cast<std::uint64_t>(matrix.rows());
        auto columns = static_cast<std::uint64_t>(matrix.cols());
        (*this)(rows, columns);
        m_bytes.append(reinterpret_cast<char const *>(matrix.data()), matrix.size() * sizeof(Scalar));
    }

    std::string m_bytes;
    std::uint32_t m_version;
};

class ReadingArchive {
public:
    // Throws NCError when the text is not the undamaged saved form of that name, or of a newer version. The text must
    // outlive the archive.
    ReadingArchive(std::string_view bytes, std::string_view name, std::uint32_t version);

    template <typename... Values>
    void operator()(Values &...values) {
        (Get(values), ...);
    }

    // That of the saved form.
    std::uint32_t Version() const { return m_version; }

    // Throws NCError when not all has been read.
    void Finish() const;

private:
    template <typename Value>
    void Get(Value &value) {
        if constexpr (std::is_same_v<Value, bool>)
            value = GetBool();
        else if constexpr (std::is_arithmetic_v<Value> || std::is_enum_v<Value>)
            Copy(&value, sizeof(value));
        else
            Transfer(*this, value);
    }
    template <typename Value>
    void Get(std::vector<Value> &values) {
        auto const size = GetSize(1, 1);
        values.clear();
        // One by one, so that memory grows no faster than what is read.
        while (values.size() < size)
            Get(values.emplace_back());
    }
    template <typename Value>
    void Get(std::optional<Value> &value) {
        if (GetBool())
            Get(value.emplace());
    }
    void Get(std::string &text) {
        text.resize(GetSize(1, 1));
        Copy(text.data(), text.size());
    }
    template <typename Scalar, int R, int C, int O>
    void Get(Eigen::Matrix<Scalar, R, C, O> &matrix) {
        std::uint64_t rows = 0;
        Get(rows);
        auto const columns = GetSize(rows, sizeof(Scalar));
        constexpr std::uint64_t most = std::numeric_limits<std::int32_t>::max();
        if (rows > most || columns > most || (C != Eigen::Dynamic && static_cast<int>(columns) != C))
            ThrowDamaged();
        matrix.resize(static_cast<Index>(rows), static_cast<Index>(columns));
        Copy(matrix.data(), matrix.size() * sizeof(Scalar));
    }

    // A count of things of `rows` times `bytes` bytes at least, that must still be there.
    std::uint64_t GetSize(std::uint64_t rows, std::uint64_t bytes);
    void Copy(void *to, std::size_t size);
    bool GetBool();
    [[noreturn]] void ThrowDamaged() const;

    std::string m_name;
    std::string_view m_rest;
    std::uint32_t m_version = 0;
};

} // namespace engine
