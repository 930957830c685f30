#pragma once

#include "foundations/FileSaver.h"

#include <cerrno>

namespace vantrel::test {

/** System calls of which one, or all from one on, fail as on a full disk; each call counts, from 1. */
class FailingFileCalls final : public FileCalls
{
public:
    /** The `n`-th call from now on fails; with `forEver` every later one too. 0 lets all succeed. */
    void failAt(int n, int error = ENOSPC, bool forEver = false)
    {
        m_next = 0;
        m_failing = n;
        m_error = error;
        m_forEver = forEver;
    }
    /** Lets write() take only so many bytes at a time. */
    void limitWrites(size_t bytes) { m_limit = bytes; }
    bool hasFailed() const { return m_failing > 0 && m_next >= m_failing; }

    int open(const char *path, int flags, mode_t mode) override
    {
        return fails() ? -1 : FileCalls::open(path, flags, mode);
    }
    ssize_t write(int descriptor, const char *bytes, size_t count) override
    {
        return fails() ? -1 : FileCalls::write(descriptor, bytes, std::min(count, m_limit));
    }
    int fsync(int descriptor) override { return fails() ? -1 : FileCalls::fsync(descriptor); }
    int close(int descriptor) override
    {
        const bool isFailing = fails();
        const int result = FileCalls::close(descriptor);
        return isFailing ? failed() : result;
    }
    int rename(const char *from, const char *to) override
    {
        return fails() ? -1 : FileCalls::rename(from, to);
    }

private:
    bool fails()
    {
        ++m_next;
        const bool isFailing = m_failing > 0 && (m_forEver ? m_next >= m_failing : m_next == m_failing);
        if (isFailing) {
            failed();
        }
        return isFailing;
    }
    int failed()
    {
        errno = m_error;
        return -1;
    }

    int m_next = 0;
    int m_failing = 0;
    int m_error = 0;
    bool m_forEver = false;
    size_t m_limit = SIZE_MAX;
};

} // namespace vantrel::test
