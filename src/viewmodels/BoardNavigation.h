#pragma once

#include "board/BoardState.h"
#include "viewmodels/CardPreferences.h"
#include "viewmodels/KanbanCardKeyboardNavigation.h"

#include <QObject>

namespace vantrel {

class Announcer;

/**
 * The keyboard's way over the cards, and the focus of the board.
 *
 * The walk goes through the cells as one reads: down a cell, then right, then to the next open swimlane, and
 * does not wrap. The card with the focus is also the selected one after each step. Nothing of it is stored.
 * Owned by BoardViewModel; GUI thread.
 */
class BoardNavigation : public QObject
{
    Q_OBJECT
public:
    BoardNavigation(BoardState &board, const CardPreferences &preferences, NotificationCenter &notifications,
                    Announcer &announcer, QObject *parent = nullptr);

    /** The card that has the keyboard focus; empty for none. */
    const QString &focusedTaskId() const { return m_focusedTaskId; }
    /** The part of that card that has it, None for the card as a whole. */
    KanbanCardFocus::Value focusedComponent() const { return m_components.focusedComponent(); }

    /** Tab and Shift+Tab: first the parts of the selected card, past their end the cards. */
    void handleTab(bool forward);
    /** Arrow keys walk the cards only. `key` is a Qt::Key. */
    void handleArrowKey(int key);
    /** Gives up the focused part, or else the selection; false if there was neither. */
    bool handleEscape();
    /** Selects a card by pointer: alone, or with `isToggle` beside the others. */
    void handleCardTap(const QString &taskId, bool isToggle);

    void handleTabNavigation(bool forward);
    void focusFirstTaskInBoard();
    void focusLastTaskInBoard();
    /** Tells in the log where the walk would begin. */
    void checkForInitialFocusableTask();
    void setFocusedTaskId(const QString &taskId);

Q_SIGNALS:
    /** Another card has the focus; `previous` may be empty. */
    void focusedTaskChanged(const QString &previous);
    void focusedComponentChanged();

private:
    /** Indexes of a column and a swimlane in the order of the board. */
    struct Place
    {
        int column = 0;
        int swimLane = 0;
    };

    void navigateToNextColumn(Place from);
    void navigateToPreviousColumn(Place from);
    void navigateToNextSwimLane(int fromSwimLane);
    void navigateToPreviousSwimLane(int fromSwimLane);
    void step(bool forward, Place place, const WorkItems &cell, int row);
    WorkItemPtr firstTaskInBoard() const;
    WorkItemPtr lastTaskInBoard() const;
    WorkItems tasksAt(Place place) const;
    void focusAndSelect(const WorkItemPtr &task);
    bool walkComponents(bool forward);
    void announceSelectionChange(const QString &taskId);
    void handleSelectionChanged();
    void updateComponents();
    int columnCount() const { return static_cast<int>(m_board.columnManager().columns().size()); }
    int swimLaneCount() const { return static_cast<int>(m_board.swimLaneManager().swimLanes().size()); }

    BoardState &m_board;
    const CardPreferences &m_preferences;
    NotificationCenter &m_notifications;
    Announcer &m_announcer;
    QString m_focusedTaskId;
    KanbanCardKeyboardNavigation m_components;
    /** The ear on the focused task: its parts may come and go. */
    QMetaObject::Connection m_taskConnection;
};

} // namespace vantrel
