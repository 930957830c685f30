#pragma once

#include <QCoroTask>
#include <QString>

#include <functional>

namespace vantrel {

/** What to do with the message of a failure that nobody awaits. */
using FailureHandler = std::function<void(const QString &message)>;

/**
 * Starts `task` without waiting for it. A failure is logged under `name` and handed to `onFailure`; a
 * detached coroutine that throws would otherwise end in silence.
 */
void launch(QCoro::Task<> task, QString name, FailureHandler onFailure = {});

} // namespace vantrel
