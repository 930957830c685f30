#include "app/StorageNotices.h"

#include "foundations/UserDefaults.h"
#include "persistence/PersistenceManager.h"

#include <algorithm>

namespace vantrel {

StorageNotices::StorageNotices(PersistenceManager &persistence, UserDefaults &defaults, ToastManager &toasts,
                               QObject *parent)
    : QObject(parent), m_toasts(toasts)
{
    for (const StorageProblem &problem : persistence.problems()) {
        add(problem);
    }
    if (!defaults.problem().isEmpty()) {
        tell(defaults.problem());
    }
    connect(&persistence, &PersistenceManager::problemFound, this, &StorageNotices::add);
    connect(&persistence, &PersistenceManager::writingRecovered, this, &StorageNotices::handleRecovery);
    connect(&defaults, &UserDefaults::problemFound, this, &StorageNotices::tell);
    connect(&toasts, &ToastManager::changed, this, &StorageNotices::handleToastChange);
}

void StorageNotices::tell(const QString &message)
{
    add({StorageProblem::Kind::ConfigurationNotSaved, message, {}, false});
}

void StorageNotices::add(const StorageProblem &problem)
{
    m_isRecoveryAwaited |= problem.kind == StorageProblem::Kind::WriteFailed;
    const bool isKnown =
        std::any_of(m_problems.begin(), m_problems.end(), [&problem](const StorageProblem &known) {
            return known.kind == problem.kind && known.message == problem.message;
        });
    if (isKnown) {
        return;
    }
    m_problems.push_back(problem);
    if (m_problems.size() == 1) {
        showFirst();
    }
}

void StorageNotices::handleRecovery()
{
    if (!m_isRecoveryAwaited) {
        return;
    }
    m_isRecoveryAwaited = false;
    m_isShown = false;
    std::erase_if(m_problems, [](const StorageProblem &problem) {
        return problem.kind == StorageProblem::Kind::WriteFailed;
    });
    m_toasts.show(tr("Everything is saved again."), ToastManager::ToastStyle::Success);
}

void StorageNotices::handleToastChange()
{
    if (m_problems.empty()) {
        return;
    }
    if (m_toasts.isShowing()) {
        m_isShown = m_toasts.message() == m_problems.front().message;
        return;
    }
    if (m_isShown) {
        m_problems.pop_front();
        m_isShown = false;
    }
    if (!m_problems.empty()) {
        showFirst();
    }
}

void StorageNotices::showFirst()
{
    m_isShown = true;
    m_toasts.show(m_problems.front().message, ToastManager::ToastStyle::Error,
                  {.accessibilityPriority = AnnouncementPriority::High, .isPermanent = true});
}

} // namespace vantrel
