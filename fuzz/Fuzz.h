#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

/** What libFuzzer calls with each input. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace vantrel::fuzz {

/** Ends the run, so that the fuzzer keeps the input, where something does not hold that always must. */
inline void require(bool holds, const char *what)
{
    if (!holds) {
        std::fprintf(stderr, "This does not hold: %s\n", what);
        std::abort();
    }
}

inline void requireValid(const QString &text)
{
    require(text.isValidUtf16(), "the text is valid UTF-16");
}

inline void requireValid(const std::optional<QString> &text)
{
    requireValid(text.value_or(QString()));
}

inline QByteArray bytesOf(const std::uint8_t *data, std::size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
}

/** The input as text: UTF-8, or, behind its byte order mark, UTF-16 as it comes, torn surrogate pairs too. */
inline QString textOf(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = bytesOf(data, size);
    if (!bytes.startsWith("\xFF\xFE")) {
        return QString::fromUtf8(bytes);
    }
    QString text(bytes.size() / 2 - 1, Qt::Uninitialized);
    std::memcpy(text.data(), bytes.constData() + 2, static_cast<std::size_t>(text.size()) * sizeof(QChar));
    return text;
}

} // namespace vantrel::fuzz
