#pragma once

#include "foundations/Date.h"

#include <QByteArrayView>
#include <QString>

#include <concepts>
#include <optional>
#include <variant>

struct sqlite3_stmt;

namespace vantrel {

class SqliteConnection;

/**
 * A prepared statement on loan from its connection: reset, with its bindings cleared, when it goes.
 *
 * Parameters count from 1, columns from 0. A statement that could not be prepared fails in every step.
 */
class SqliteStatement
{
public:
    SqliteStatement(SqliteConnection &connection, sqlite3_stmt *statement)
        : m_connection(connection), m_statement(statement)
    {
    }
    SqliteStatement(SqliteStatement &&other) noexcept;
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement &) = delete;
    SqliteStatement &operator=(const SqliteStatement &) = delete;
    SqliteStatement &operator=(SqliteStatement &&) = delete;

    bool isPrepared() const { return m_statement != nullptr; }

    bool bind(int parameter, QStringView text);
    bool bind(int parameter, const QString &text) { return bind(parameter, QStringView(text)); }
    bool bind(int parameter, qint64 number);
    bool bind(int parameter, int number) { return bind(parameter, qint64(number)); }
    /** A template, because a pointer would turn into a bool rather than into a text. */
    bool bind(int parameter, std::same_as<bool> auto isSet) { return bind(parameter, qint64(isSet ? 1 : 0)); }
    bool bind(int parameter, double number);
    bool bind(int parameter, Date date) { return bind(parameter, date.seconds()); }
    bool bind(int parameter, std::monostate) { return bindNull(parameter); }
    bool bindNull(int parameter);
    /** UTF-8 that stays where it is until the statement is next stepped to its end: not copied. */
    bool bindUnowned(int parameter, QByteArrayView utf8);
    /** An absent value is null. */
    template <typename Value>
    bool bind(int parameter, const std::optional<Value> &value)
    {
        return value ? bind(parameter, *value) : bindNull(parameter);
    }
    bool bind(int parameter, const char *text) = delete;

    /** Goes to the next row. False at the end and on failure. */
    bool step();
    /** For a statement without rows: runs it and makes it ready to be bound and run again. */
    bool run();
    /** How many rows the last run of a statement of this connection has changed, without those of triggers.
     */
    qint64 changedRows() const;
    bool hasFailed() const { return m_hasFailed; }

    int columnCount() const;
    bool isNull(int column) const;
    qint64 integer(int column) const;
    double real(int column) const;
    /** Valid until the next step. */
    QByteArrayView utf8(int column) const;
    QString text(int column) const;
    /** Nothing for null. */
    std::optional<QString> optionalText(int column) const;
    std::optional<Date> optionalDate(int column) const;

private:
    bool accept(int code);

    SqliteConnection &m_connection;
    sqlite3_stmt *m_statement;
    bool m_hasFailed = false;
};

} // namespace vantrel
