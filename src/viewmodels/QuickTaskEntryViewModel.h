#pragma once

#include "exchange/NaturalLanguageParser.h"
#include "viewmodels/TaskConfirmationViewModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

/**
 * Quick entry: a line is typed, shown as it was understood, corrected, and made a task. What was typed stays
 * until it is a task, also while the sheet is closed. Owned by AppViewModel; GUI thread.
 */
class QuickTaskEntryViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(bool open READ isOpen NOTIFY openChanged)
    Q_PROPERTY(QString inputText READ inputText WRITE setInputText NOTIFY inputTextChanged)
    Q_PROPERTY(bool isShowingConfirmation READ isShowingConfirmation NOTIFY confirmationShownChanged)
    Q_PROPERTY(vantrel::TaskConfirmationViewModel *confirmation READ confirmation CONSTANT)
public:
    explicit QuickTaskEntryViewModel(const QuickEntryServices &services, QObject *parent = nullptr);

    bool isOpen() const { return m_isOpen; }
    QString inputText() const { return m_inputText; }
    void setInputText(const QString &text);
    bool isShowingConfirmation() const { return m_isShowingConfirmation; }
    TaskConfirmationViewModel *confirmation() { return &m_confirmation; }

    Q_INVOKABLE void show();
    /** Leaves the sheet; what is not a task yet is there again next time. */
    Q_INVOKABLE void close();
    /** Reads the line and shows what was understood; a line of blanks does nothing. */
    Q_INVOKABLE void parseAndContinue();
    /** Back from the confirmation to the line. Corrections are there again unless the line is changed. */
    Q_INVOKABLE void backToInput();

Q_SIGNALS:
    void openChanged();
    void inputTextChanged();
    void confirmationShownChanged();

private:
    void setShowingConfirmation(bool isShowing);
    void finish();

    Announcer &m_announcer;
    NaturalLanguageParser m_parser;
    TaskConfirmationViewModel m_confirmation;
    bool m_isOpen = false;
    bool m_isShowingConfirmation = false;
    QString m_inputText;
    /** The line that the confirmation was made from; empty before the first, and after a task was made. */
    QString m_parsedText;
};

} // namespace vantrel
