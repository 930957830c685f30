#pragma once

#include "board/BoardState.h"

#include <QObject>

#include <functional>

namespace vantrel {

class TaskBlockingManager;
class TaskContextMenuActions;

/** What the commands of the board need. Everything outlives the handlers. */
struct BoardCommandServices
{
    BoardState &board;
    TaskBlockingManager &blocking;
    NotificationCenter &notifications;
    UserDefaults &defaults;
    SoundManager &sounds;
    ToastManager &toasts;
    TaskContextMenuActions &actions;
};

/**
 * Answers the commands that menus and keys post while the board is shown: moves of the selected task, block
 * and flag, expansion of swimlanes, zoom and filters. Owned by BoardViewModel; GUI thread.
 */
class BoardCommandHandlers : public QObject
{
    Q_OBJECT
public:
    enum class Direction { Back, Forward };

    explicit BoardCommandHandlers(const BoardCommandServices &services, QObject *parent = nullptr);

private:
    void observe(NotificationName name, std::function<void()> answer);
    void observeMoves();
    void observeMarks();
    void observeViewCommands();

    void handleMoveTaskVertically(Direction direction);
    void handleMoveTaskHorizontally(Direction direction);
    void handleMoveTaskBetweenSwimLanes(Direction direction);
    void handleCmdShiftEnterToComplete();
    void handleToggleTaskBlock();
    void handleToggleTaskFlag();
    void handleToggleSwimLaneExpansion(int index);

    /** The one selected task; otherwise logs `refusal`, where %1 is the number selected, and gives nullptr.
     */
    WorkItemPtr onlySelectedTask(const QString &refusal) const;
    /** Its place, or nullptr with a log line. */
    const TaskPosition *placeOf(const WorkItem &task) const;

    BoardCommandServices m_services;
};

} // namespace vantrel
