#include "engine/storage/Database_internal.h"

#include "platform/text/Exception.h"

#include <sqlite3.h>

#include <filesystem>
#include <new>
#include <utility>

namespace engine {

namespace {

// How long to wait for what another program holds for moments only: a checkpoint, the recovery after a crash.
constexpr int busyMilliseconds = 5000;

// Who only reads opens for writing too, where that is allowed: the last one to close a file can then take away what
// stands beside it while it is open.
int Flags(Database::Mode mode) {
    return mode == Database::Mode::Create ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE : SQLITE_OPEN_READWRITE;
}

// A path within a URI.
std::string Encoded(std::string const &path) {
    std::string encoded;
    for (char const letter : path)
        if (letter == '%' || letter == '?' || letter == '#')
            encoded += letter == '%' ? "%25" : letter == '?' ? "%3F" : "%23";
        else
            encoded += letter;
    return encoded;
}

// To read a file that nobody has open, SQLite makes files beside it, of some 32 kB, which stay when they can't be
// filled.
bool LacksRoomBeside(std::string const &file) {
    constexpr std::uintmax_t room = 65536;
    std::error_code failed;
    for (char const *ending : {"-wal", "-shm"})
        if (std::filesystem::exists(file + ending, failed))
            return false;
    std::filesystem::space_info const space = std::filesystem::space(file, failed);
    return !failed && space.available < room;
}

bool HasBytes(std::string const &file) {
    std::error_code notThere;
    std::uintmax_t const size = std::filesystem::file_size(file, notThere);
    return !notThere && size > 0;
}

} // namespace

void Database::Closer::operator()(sqlite3 *handle) const {
    sqlite3_close_v2(handle);
}

Database::Database(std::string const &path, std::string name, Mode mode) : m_name(std::move(name)) {
    bool const hasLog = HasBytes(path + "-wal");
    bool const asItIs = mode == Mode::ReadOnly && LacksRoomBeside(path);
    if (!asItIs)
        Open(path, Flags(mode));
    if (mode != Mode::ReadOnly)
        return;
    // Where nothing can be written, for want of rights or of room, nobody else can have the file open for writing
    // either.
    if (asItIs || (!CanRead() && !hasLog))
        Open("file:" + Encoded(path) + "?immutable=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    Execute("PRAGMA query_only = ON;");
}

bool Database::CanRead() const {
    int const code =
        sqlite3_exec(m_handle.get(), "SELECT 1 FROM sqlite_schema LIMIT 1", nullptr, nullptr, nullptr) & 0xFF;
    return code != SQLITE_READONLY && code != SQLITE_CANTOPEN && code != SQLITE_FULL && code != SQLITE_IOERR;
}

void Database::Open(std::string const &file, int flags) {
    sqlite3 *handle = nullptr;
    int const code = sqlite3_open_v2(file.c_str(), &handle, flags, nullptr);
    m_handle.reset(handle);
    if (!handle)
        throw std::bad_alloc();
    Check(code);
    sqlite3_extended_result_codes(handle, 1);
    sqlite3_busy_timeout(handle, busyMilliseconds);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
}

void Database::Execute(char const *sql) {
    Check(sqlite3_exec(m_handle.get(), sql, nullptr, nullptr, nullptr));
}

void Database::ExecuteIfPossible(char const *sql) noexcept {
    sqlite3_exec(m_handle.get(), sql, nullptr, nullptr, nullptr);
}

std::int64_t Database::Number(char const *sql) {
    Statement statement(*this, sql);
    return statement.Step() ? statement.Integer(1) : 0;
}

bool Database::InTransaction() const {
    return sqlite3_get_autocommit(m_handle.get()) == 0;
}

void Database::Check(int code) const {
    switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return;
    case SQLITE_NOMEM:
        throw std::bad_alloc();
    case SQLITE_NOTADB:
        throw NCError(ExceptionMessage::translate("{1} is not a project.") % m_name, NCError::Error);
    case SQLITE_CORRUPT:
    case SQLITE_ERROR: // all statements are ours, so what they name is gone from the file
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
        ThrowDamaged(sqlite3_errmsg(m_handle.get()));
    case SQLITE_TOOBIG:
        throw NCError(ExceptionMessage::translate("The project {1} can't keep an item of more than 10^9 bytes.") %
                          m_name,
                      NCError::Error);
    default:
        throw NCError(ExceptionMessage::translate("The project {1} can't be read or written: {2}.") % m_name %
                          sqlite3_errmsg(m_handle.get()),
                      NCError::Error);
    }
}

void Database::ThrowDamaged(std::string const &what) const {
    throw NCError(ExceptionMessage::translate("The project {1} is damaged: {2}.") % m_name % what, NCError::Error);
}

void Statement::Finalizer::operator()(sqlite3_stmt *handle) const {
    sqlite3_finalize(handle);
}

Statement::Statement(Database &database, char const *sql) : m_database(database) {
    sqlite3_stmt *handle = nullptr;
    database.Check(sqlite3_prepare_v2(database.m_handle.get(), sql, -1, &handle, nullptr));
    m_handle.reset(handle);
}

bool Statement::Step() {
    int const code = sqlite3_step(m_handle.get());
    m_database.Check(code);
    return code == SQLITE_ROW;
}

void Statement::Run() {
    while (Step()) {
    }
    Reset();
}

std::int64_t Statement::Integer(int column) const {
    return sqlite3_column_int64(m_handle.get(), column - 1);
}

std::string_view Statement::Text(int column) const {
    auto const text = reinterpret_cast<char const *>(sqlite3_column_text(m_handle.get(), column - 1));
    return {text ? text : "", static_cast<std::size_t>(sqlite3_column_bytes(m_handle.get(), column - 1))};
}

std::span<std::byte const> Statement::Bytes(int column) const {
    auto const bytes = static_cast<std::byte const *>(sqlite3_column_blob(m_handle.get(), column - 1));
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(m_handle.get(), column - 1))};
}

// The code repeats the failure of the last step, which was told.
void Statement::Reset() {
    sqlite3_reset(m_handle.get());
}

void Statement::BindOne(int number, std::int64_t value) {
    m_database.Check(sqlite3_bind_int64(m_handle.get(), number, value));
}

void Statement::BindOne(int number, std::string_view text) {
    char const *const begin = text.data() ? text.data() : "";
    m_database.Check(sqlite3_bind_text64(m_handle.get(), number, begin, text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void Statement::BindOne(int number, std::span<std::byte const> bytes) {
    void const *const begin = bytes.empty() ? "" : static_cast<void const *>(bytes.data());
    m_database.Check(sqlite3_bind_blob64(m_handle.get(), number, begin, bytes.size(), SQLITE_STATIC));
}

} // namespace engine
