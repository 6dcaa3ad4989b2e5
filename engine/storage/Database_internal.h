#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace engine {

// A connection to an SQLite file. All failures are NCError and name the file. To read a file needs no right to write it
// or in its folder.
class Database {
public:
    enum class Mode { Create, ReadWrite, ReadOnly };

    // `name` is what errors call the file.
    Database(std::string const &path, std::string name, Mode mode);

    void Execute(char const *sql);
    // For taking back what failed: SQLite may have done so on its own.
    void ExecuteIfPossible(char const *sql) noexcept;
    // The single number that a statement yields.
    std::int64_t Number(char const *sql);
    bool InTransaction() const;

    // Throws unless `code` is a success.
    void Check(int code) const;
    [[noreturn]] void ThrowDamaged(std::string const &what) const;

private:
    friend class Statement;
    struct Closer {
        void operator()(sqlite3 *handle) const;
    };

    void Open(std::string const &file, int flags);
    bool CanRead() const;

    std::string m_name;
    std::unique_ptr<sqlite3, Closer> m_handle;
};

// One prepared statement. Parameters and columns count from 1.
class Statement {
public:
    // Binds the parameters in their order. Texts and bytes must live until the last Step.
    template <typename... Parameters>
    Statement(Database &database, char const *sql, Parameters const &...parameters) : Statement(database, sql) {
        Bind(parameters...);
    }
    Statement(Database &database, char const *sql);

    // For another run of the statement.
    template <typename... Parameters>
    void Bind(Parameters const &...parameters) {
        Reset();
        int number = 0;
        (BindOne(++number, parameters), ...);
    }

    // True when there is a row.
    bool Step();
    // Runs a statement that yields no row.
    void Run();
    // Ends a run: one that is left at a row holds on to the state of the file that it reads.
    void Reset();

    std::int64_t Integer(int column) const;
    // Texts and bytes live until the next Step.
    std::string_view Text(int column) const;
    std::span<std::byte const> Bytes(int column) const;

private:
    struct Finalizer {
        void operator()(sqlite3_stmt *handle) const;
    };

    void BindOne(int number, std::int64_t value);
    void BindOne(int number, std::string_view text);
    void BindOne(int number, std::span<std::byte const> bytes);

    Database &m_database;
    std::unique_ptr<sqlite3_stmt, Finalizer> m_handle;
};

// A run of a statement that is kept for more.
class StatementRun {
public:
    explicit StatementRun(Statement &statement) : m_statement(statement) {}
    ~StatementRun() { m_statement.Reset(); }
    StatementRun(StatementRun const &) = delete;
    StatementRun &operator=(StatementRun const &) = delete;

private:
    Statement &m_statement;
};

} // namespace engine
