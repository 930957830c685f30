#include "viewmodels/QuickTaskEntryViewModel.h"

#include "feedback/Announcer.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"

namespace vantrel {

QuickTaskEntryViewModel::QuickTaskEntryViewModel(const QuickEntryServices &services, QObject *parent)
    : QObject(parent), m_announcer(services.announcer), m_parser(services.clock), m_confirmation(services)
{
    services.notifications.observe(notifications::ShowQuickTaskEntry, this,
                                   [this](const Notification &) { show(); });
    connect(&m_confirmation, &TaskConfirmationViewModel::taskCreated, this, &QuickTaskEntryViewModel::finish);
}

void QuickTaskEntryViewModel::setInputText(const QString &text)
{
    if (m_inputText != text) {
        m_inputText = text;
        Q_EMIT inputTextChanged();
    }
}

void QuickTaskEntryViewModel::show()
{
    if (m_isOpen) {
        return;
    }
    m_isOpen = true;
    Q_EMIT openChanged();
    m_announcer.announce(
        tr("Quick Add Task window opened. Enter your task description using natural language."));
}

void QuickTaskEntryViewModel::close()
{
    if (m_isOpen && !m_confirmation.isCreating()) {
        m_isOpen = false;
        Q_EMIT openChanged();
        setShowingConfirmation(false);
    }
}

void QuickTaskEntryViewModel::parseAndContinue()
{
    const QString line = m_inputText.trimmed();
    if (line.isEmpty()) {
        return;
    }
    if (line != m_parsedText) {
        log::debug(u"Parsing input text: " + line);
        const ParsedTask task = m_parser.parseTask(line);
        log::debug(u"Successfully parsed task: " + task.name);
        m_parsedText = line;
        m_confirmation.begin(task, line);
    }
    m_announcer.announce(tr("Task parsed successfully. Opening confirmation screen."));
    log::debug(QStringLiteral("Setting isShowingConfirmation to true"));
    setShowingConfirmation(true);
}

void QuickTaskEntryViewModel::backToInput()
{
    if (!m_confirmation.isCreating()) {
        setShowingConfirmation(false);
    }
}

void QuickTaskEntryViewModel::setShowingConfirmation(bool isShowing)
{
    if (m_isShowingConfirmation != isShowing) {
        m_isShowingConfirmation = isShowing;
        Q_EMIT confirmationShownChanged();
    }
}

void QuickTaskEntryViewModel::finish()
{
    m_parsedText.clear();
    setInputText({});
    close();
}

} // namespace vantrel
