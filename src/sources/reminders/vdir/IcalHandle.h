#pragma once

#include <QByteArray>
#include <QMutex>

#include <memory>

#include <libical/ical.h>

namespace vantrel {

struct IcalDeleter
{
    void operator()(icalcomponent *component) const { icalcomponent_free(component); }
    void operator()(icalrecur_iterator *iterator) const { icalrecur_iterator_free(iterator); }
    void operator()(char *text) const { icalmemory_free_buffer(text); }
};

/** What libical has allocated, and what has to be given back to it. */
template <typename T>
using IcalHandle = std::unique_ptr<T, IcalDeleter>;

/** To be held while times of named zones are met: libical shares what it knows of these between threads. */
inline QRecursiveMutex &icalZoneMutex()
{
    static QRecursiveMutex mutex;
    return mutex;
}

inline QByteArray icalText(icaltimetype time)
{
    return QByteArray(IcalHandle<char>(icaltime_as_ical_string_r(time)).get());
}

} // namespace vantrel
