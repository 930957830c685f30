#include "persistence/sqlite/SqliteStatement.h"

#include "persistence/sqlite/SqliteConnection.h"

#include <QStringEncoder>
#include <QVarLengthArray>

#include <sqlite3.h>

#include <utility>

namespace vantrel {

SqliteStatement::SqliteStatement(SqliteStatement &&other) noexcept
    : m_connection(other.m_connection),
      m_statement(std::exchange(other.m_statement, nullptr)),
      m_hasFailed(other.m_hasFailed)
{
}

SqliteStatement::~SqliteStatement()
{
    sqlite3_reset(m_statement);
    if (m_statement) {
        sqlite3_clear_bindings(m_statement);
    }
}

bool SqliteStatement::accept(int code)
{
    if (code != SQLITE_OK) {
        m_connection.noteFailure();
        m_hasFailed = true;
    }
    return code == SQLITE_OK;
}

bool SqliteStatement::bind(int parameter, QStringView text)
{
    constexpr qsizetype usualLength = 256;
    QStringEncoder encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
    QVarLengthArray<char, usualLength> utf8(encoder.requiredSpace(text.size()) + 1);
    const char *end = encoder.appendToBuffer(utf8.data(), text);
    const auto length = static_cast<sqlite3_uint64>(end - utf8.data());
    return accept(
        sqlite3_bind_text64(m_statement, parameter, utf8.data(), length, SQLITE_TRANSIENT, SQLITE_UTF8));
}

bool SqliteStatement::bind(int parameter, qint64 number)
{
    return accept(sqlite3_bind_int64(m_statement, parameter, number));
}

bool SqliteStatement::bind(int parameter, double number)
{
    return accept(sqlite3_bind_double(m_statement, parameter, number));
}

bool SqliteStatement::bindNull(int parameter)
{
    return accept(sqlite3_bind_null(m_statement, parameter));
}

bool SqliteStatement::bindUnowned(int parameter, QByteArrayView utf8)
{
    // A null pointer would bind null instead of the empty text.
    const char *bytes = utf8.data() ? utf8.data() : "";
    const auto length = static_cast<sqlite3_uint64>(utf8.size());
    return accept(sqlite3_bind_text64(m_statement, parameter, bytes, length, SQLITE_STATIC, SQLITE_UTF8));
}

bool SqliteStatement::step()
{
    const int code = m_statement ? sqlite3_step(m_statement) : SQLITE_MISUSE;
    if (code == SQLITE_ROW) {
        return true;
    }
    accept(code == SQLITE_DONE ? SQLITE_OK : code);
    return false;
}

bool SqliteStatement::run()
{
    const bool hasRow = step();
    sqlite3_reset(m_statement);
    return !hasRow && !m_hasFailed;
}

qint64 SqliteStatement::changedRows() const
{
    return sqlite3_changes64(m_connection.handle());
}

int SqliteStatement::columnCount() const
{
    return sqlite3_column_count(m_statement);
}

bool SqliteStatement::isNull(int column) const
{
    return sqlite3_column_type(m_statement, column) == SQLITE_NULL;
}

qint64 SqliteStatement::integer(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

double SqliteStatement::real(int column) const
{
    return sqlite3_column_double(m_statement, column);
}

QByteArrayView SqliteStatement::utf8(int column) const
{
    // The text first: asking for it may convert the value and so change the count of bytes.
    const unsigned char *bytes = sqlite3_column_text(m_statement, column);
    return {bytes, bytes ? sqlite3_column_bytes(m_statement, column) : 0};
}

QString SqliteStatement::text(int column) const
{
    return QString::fromUtf8(utf8(column));
}

std::optional<QString> SqliteStatement::optionalText(int column) const
{
    return isNull(column) ? std::nullopt : std::optional(text(column));
}

std::optional<Date> SqliteStatement::optionalDate(int column) const
{
    return isNull(column) ? std::nullopt : std::optional(Date(real(column)));
}

} // namespace vantrel
