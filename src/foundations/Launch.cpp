#include "foundations/Launch.h"

#include "foundations/Log.h"

#include <exception>

namespace vantrel {

namespace {

QCoro::Task<> guard(QCoro::Task<> task, QString name, FailureHandler onFailure)
{
    QString message;
    try {
        co_await task;
        co_return;
    } catch (const std::exception &failure) {
        message = QString::fromUtf8(failure.what());
    }
    log::error(name + u" failed: " + message);
    if (onFailure) {
        onFailure(message);
    }
}

} // namespace

void launch(QCoro::Task<> task, QString name, FailureHandler onFailure)
{
    guard(std::move(task), std::move(name), std::move(onFailure));
}

} // namespace vantrel
