#pragma once

#include "platform/containers/NCDataMatrix.h"
#include "platform/containers/NCStringVector.h"
#include "platform/containers/StreamBytes.h"
#include "platform/identity/BatchUtilities.h"
#include "platform/identity/ColumnTerm.h"
#include "platform/text/Exception.h"

#include <algorithm>
#include <cstdint>
#include <istream>
#include <map>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

// Fields of a record to and from a binary stream: numbers have four bytes, lists their count in front. Both classes
// take the same arguments, so that one list of fields serves both directions.

template <typename Value>
constexpr bool IsPlainNumber = std::is_arithmetic_v<Value> || std::is_enum_v<Value>;

class FieldWriter {
public:
    explicit FieldWriter(std::ostream &stream) : m_stream(stream) {}

    template <typename... Values>
    void operator()(Values const &...values) {
        (Put(values), ...);
    }

private:
    template <typename Number>
    requires IsPlainNumber<Number>
    void Put(Number number) {
        std::uint32_t const bytes = static_cast<std::uint32_t>(number);
        WriteFourBytes(m_stream, &bytes);
    }
    void Put(float number) { WriteFourBytes(m_stream, &number); }
    void Put(std::string const &text) {
        Put(text.size());
        WriteBytes(m_stream, text.data(), text.size());
    }
    void Put(NCDataVector<float> const &values) { m_stream << values; }
    void Put(NCIntegralVector<unsigned long, 0> const &values) { m_stream << values; }
    void Put(NCDataMatrix<float> const &matrix) {
        (*this)(matrix.Rows(), matrix.Columns());
        WriteFourByteList<float>(m_stream, matrix.Values());
    }
    void Put(ColumnTerm const &term) {
        Put(term.Size());
        for (int factor = 1; factor <= term.Size(); ++factor)
            (*this)(term.GetMotherVariable(factor), term.GetLag(factor), term.GetQualSetting(factor));
    }
    void Put(BatchInfo const &batch) { (*this)(batch.name, batch.length); }
    template <typename One, typename Other>
    void Put(std::pair<One, Other> const &pair) {
        (*this)(pair.first, pair.second);
    }
    template <typename List>
    requires requires(List const &list) { list.begin(); }
    void Put(List const &list) {
        Put(std::distance(list.begin(), list.end()));
        for (auto const &item : list)
            Put(item);
    }

    std::ostream &m_stream;
};

// Throws VqStreamError when the stream ends or holds what cannot be. Memory is asked for as the bytes come, whatever
// lengths the stream claims.
class FieldReader {
public:
    explicit FieldReader(std::istream &stream) : m_stream(stream) {}

    template <typename... Values>
    void operator()(Values &...values) {
        (Get(values), ...);
    }

    static void Require(bool sound) {
        if (!sound)
            throw VqStreamError(ExceptionMessage::translate("Error when reading from stream."));
    }

private:
    template <typename Number>
    requires IsPlainNumber<Number>
    void Get(Number &number) {
        if constexpr (std::is_enum_v<Number>)
            static_assert(
                requires { Number{0}; }, "a damaged stream can hold any int");
        std::int32_t bytes = 0;
        Require(ReadFourBytes(m_stream, &bytes));
        if constexpr (std::is_same_v<Number, bool>)
            Require(bytes == 0 || bytes == 1);
        number = static_cast<Number>(bytes);
    }
    void Get(float &number) { Require(ReadFourBytes(m_stream, &number)); }
    void Get(std::string &text) {
        std::uint32_t size = 0;
        Get(size);
        text.clear();
        while (text.size() < size) {
            std::size_t const read = text.size();
            text.resize(std::min<std::size_t>(size, read + 65536));
            Require(ReadBytes(m_stream, text.data() + read, text.size() - read));
        }
    }
    void Get(NCDataVector<float> &values) { m_stream >> values; }
    void Get(NCIntegralVector<unsigned long, 0> &values) { m_stream >> values; }
    void Get(NCDataMatrix<float> &matrix) {
        int rows = 0, columns = 0;
        (*this)(rows, columns);
        std::vector<float> const values = ReadFourByteList<float>(m_stream);
        Require(rows >= 0 && columns >= 0 && values.size() == std::size_t(rows) * std::size_t(columns));
        matrix = NCDataMatrix<float>(rows, columns);
        std::ranges::copy(values, matrix.MutableValues().begin());
    }
    void Get(ColumnTerm &term) {
        std::vector<std::uint32_t> mothers;
        std::vector<int> lags, settings;
        std::uint32_t size = 0;
        for (Get(size); size > 0; --size)
            (*this)(mothers.emplace_back(), lags.emplace_back(), settings.emplace_back());
        term = ColumnTerm(std::move(mothers), std::move(lags), std::move(settings));
    }
    void Get(BatchInfo &batch) { (*this)(batch.name, batch.length); }
    template <typename One, typename Other>
    void Get(std::pair<One, Other> &pair) {
        (*this)(pair.first, pair.second);
    }
    template <typename Item>
    void Get(std::vector<Item> &list) {
        list.clear();
        std::uint32_t size = 0;
        for (Get(size); size > 0; --size)
            Get(list.emplace_back());
    }
    template <typename Value>
    void Get(std::map<int, Value> &map) {
        std::vector<std::pair<int, Value>> items;
        Get(items);
        map = std::map<int, Value>(items.begin(), items.end());
    }
    // Containers that are made from a vector of their items.
    template <typename List>
    requires requires(List const &list) { list.begin(); }
    void Get(List &list) {
        std::vector<std::remove_cvref_t<decltype(*list.begin())>> items;
        Get(items);
        list = List(std::move(items));
    }

    std::istream &m_stream;
};
