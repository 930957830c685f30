#pragma once

#include "viewmodels/TaskContextMenuProvider.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

/**
 * The menu of the card that was asked for it, and the question that stands before a deletion. Owned by
 * BoardViewModel; GUI thread.
 */
class TaskContextMenu : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the board")
    Q_PROPERTY(QVariantList entries READ entries NOTIFY opened)
    Q_PROPERTY(QString title READ title NOTIFY opened)
    Q_PROPERTY(QString question READ question NOTIFY questionChanged)
    Q_PROPERTY(QString questionDetails READ questionDetails NOTIFY questionChanged)
public:
    TaskContextMenu(BoardState &board, TaskContextMenuActions &actions, TaskMenuScreen screen,
                    QObject *parent = nullptr);

    /** Each a contextMenuEntry. */
    QVariantList entries() const { return toVariantList(m_entries); }
    /** What a screen reader calls the menu. */
    QString title() const { return m_title; }
    /** What is asked before tasks are deleted; empty for nothing. */
    QString question() const;
    /** Which tasks are meant. */
    QString questionDetails() const;

    /** Makes the menu of a card, or of the selection of several that it is part of; nothing for a task that
     * is not on the board. */
    Q_INVOKABLE void open(const QString &taskId);
    /** Does what the entry of that number says. */
    Q_INVOKABLE void trigger(int number);
    /** Puts the question whether plain text tasks are to be deleted. */
    void askToDelete(const QStringList &taskIds);
    Q_INVOKABLE void confirmDeletion();
    Q_INVOKABLE void cancelDeletion();

Q_SIGNALS:
    void opened();
    void questionChanged();

private:
    void number(ContextMenuEntries &entries);

    BoardState &m_board;
    TaskContextMenuActions &m_actions;
    TaskContextMenuProvider m_provider;
    ContextMenuEntries m_entries;
    QString m_title;
    /** By the numbers of their entries. */
    std::vector<std::function<void()>> m_entryActions;
    QStringList m_idsToDelete;
};

} // namespace vantrel
