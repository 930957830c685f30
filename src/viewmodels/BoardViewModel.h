#pragma once

#include "feedback/DesktopPorts.h"
#include "viewmodels/BoardCommandHandlers.h"
#include "viewmodels/BoardDrops.h"
#include "viewmodels/BoardNavigation.h"
#include "viewmodels/CardPopover.h"
#include "viewmodels/CardPreferences.h"
#include "viewmodels/CellModel.h"
#include "viewmodels/ColumnListModel.h"
#include "viewmodels/CompletionAnimations.h"
#include "viewmodels/SwimLaneListModel.h"
#include "viewmodels/TaskContextMenu.h"
#include "viewmodels/TaskContextMenuActions.h"
#include "viewmodels/TaskNameEditor.h"

#include <QHash>
#include <QObject>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

class TimeManager;

/** What the board's screen needs of the program. Everything outlives it. */
struct BoardViewServices
{
    BoardState &board;
    TaskBlockingManager &blocking;
    NotificationCenter &notifications;
    UserDefaults &defaults;
    const TimeManager &time;
    Announcer &announcer;
    SoundManager &sounds;
    ToastManager &toasts;
    UrlOpener &urls;
    Clipboard &clipboard;
    DesktopFamily desktop = DesktopFamily::Linux;
};

/**
 * The board's screen: columns and swimlanes with their cells, and what the user does there by pointer and
 * key.
 *
 * Ids cross to QML as texts. Follows the board through its one changed() a turn; a card redraws alone when
 * its task changes. Owned by Services' root of the interface; GUI thread.
 */
class BoardViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(vantrel::ColumnListModel *columns READ columns CONSTANT)
    Q_PROPERTY(vantrel::SwimLaneListModel *swimLanes READ swimLanes CONSTANT)
    Q_PROPERTY(vantrel::CardPopover *popover READ popover CONSTANT)
    Q_PROPERTY(vantrel::TaskNameEditor *nameEditor READ nameEditor CONSTANT)
    Q_PROPERTY(vantrel::TaskContextMenu *contextMenu READ contextMenu CONSTANT)
    Q_PROPERTY(vantrel::CompletionAnimations *celebrations READ celebrations CONSTANT)
    Q_PROPERTY(double zoomLevel READ zoomLevel NOTIFY zoomLevelChanged)
    Q_PROPERTY(double columnHeaderHeight READ columnHeaderHeight CONSTANT)
    Q_PROPERTY(QString focusedTaskId READ focusedTaskId NOTIFY focusedTaskChanged)
    Q_PROPERTY(int focusedSwimLaneRow READ focusedSwimLaneRow NOTIFY focusedTaskChanged)
    Q_PROPERTY(QString isolationTitle READ isolationTitle NOTIFY isolationChanged)
    Q_PROPERTY(QVariantList activeTagFilters READ activeTagFilters NOTIFY filtersChanged)
    Q_PROPERTY(bool useColumnColors READ useColumnColors NOTIFY backgroundChanged)
    Q_PROPERTY(int selectedCount READ selectedCount NOTIFY selectionChanged)
    Q_PROPERTY(QStringList dragFormats READ dragFormats CONSTANT)
public:
    explicit BoardViewModel(const BoardViewServices &services, QObject *parent = nullptr);
    ~BoardViewModel() override;

    ColumnListModel *columns() { return &m_columns; }
    SwimLaneListModel *swimLanes() { return &m_swimLanes; }
    CardPopover *popover() { return &m_popover; }
    TaskNameEditor *nameEditor() { return &m_nameEditor; }
    TaskContextMenu *contextMenu() { return &m_contextMenu; }
    CompletionAnimations *celebrations() { return &m_celebrations; }
    double zoomLevel() const { return m_services.board.zoomLevel(); }
    static double columnHeaderHeight() { return BoardDrops::ColumnHeaderHeight; }
    const QString &focusedTaskId() const { return m_navigation.focusedTaskId(); }
    /** The row of the swimlane that shows the card with the focus; -1 without one. */
    int focusedSwimLaneRow() const;
    /** What the isolation indicator says; empty while no swimlane is isolated. */
    QString isolationTitle() const;
    /** The tags that filter, as maps of "id" and "name". */
    QVariantList activeTagFilters() const;
    bool useColumnColors() const { return m_preferences.useColumnHeaderColorAsBackground(); }
    int selectedCount() const { return static_cast<int>(m_selectedTaskIds.size()); }
    /** The MIME types under which a card travels, to be read in this order. */
    static QStringList dragFormats();

    BoardNavigation &navigation() { return m_navigation; }

    /** The cards of a cell; nullptr if the board has no such swimlane or column. */
    Q_INVOKABLE vantrel::CellModel *cell(const QString &swimLaneId, const QString &columnId);

    /** Answers a key that a card of the board was given; false if it means nothing here. */
    Q_INVOKABLE bool handleKey(int key, int modifiers);
    Q_INVOKABLE void tapCard(const QString &taskId, bool isToggle);
    /** Opens the menu of the card, which takes the selection unless it is part of it. */
    Q_INVOKABLE void openContextMenu(const QString &taskId);
    Q_INVOKABLE void retry(const QString &taskId);
    /** The board has come on the screen. */
    Q_INVOKABLE void appear();

    Q_INVOKABLE void toggleSwimLane(const QString &swimLaneId);
    Q_INVOKABLE void toggleIsolation(const QString &swimLaneId);
    Q_INVOKABLE void clearIsolation();
    /** Heights are in points at zoom 1. */
    Q_INVOKABLE void setSwimLaneHeight(const QString &swimLaneId, double height);
    Q_INVOKABLE static double clampedHeight(double height);
    Q_INVOKABLE void removeTagFilter(const QString &tagId);
    Q_INVOKABLE void clearTagFilters();

    /** How many cards a drag of this one takes along. */
    Q_INVOKABLE int draggedTaskCount(const QString &taskId) const;
    /** Begins a drag of the card, and of the selection that it is part of; gives what the drag carries. */
    Q_INVOKABLE QVariantMap beginDrag(const QString &taskId);
    Q_INVOKABLE void endDrag();
    /** Opens the place in the cell where a drop would land; false if what is dragged cannot land. `y` is in
     * points at zoom 1 from the top of the cell. */
    Q_INVOKABLE bool dragOver(vantrel::CellModel *cell, const QVariantMap &offer, double y);
    Q_INVOKABLE static void dragLeft(vantrel::CellModel *cell);
    Q_INVOKABLE bool drop(vantrel::CellModel *cell, const QVariantMap &offer, double y);

Q_SIGNALS:
    void zoomLevelChanged();
    void focusedTaskChanged();
    void isolationChanged();
    void filtersChanged();
    void backgroundChanged();
    void selectionChanged();

private:
    void connectBoard();
    void connectCards();
    void refresh();
    void refreshColumns();
    void refreshSwimLanes();
    void dropStaleCells();
    CellModel &cellFor(CellId id);
    void refreshCards(const QList<int> &roles);
    void refreshCards(const QList<int> &roles, const QStringList &ids);
    void handleSelectionChanged();
    bool handleSpace();
    void handleReturn();
    TaskMenuScreen menuScreen();
    void editBlockReason(const QString &taskId);
    std::optional<QString> draggedTask(const QVariantMap &offer) const;

    BoardViewServices m_services;
    CardPreferences m_preferences;
    BoardNavigation m_navigation;
    TaskContextMenuActions m_actions;
    BoardCommandHandlers m_commands;
    BoardDrops m_drops;
    CardPopover m_popover;
    TaskNameEditor m_nameEditor;
    TaskContextMenu m_contextMenu;
    CompletionAnimations m_celebrations;
    QStringList m_draggedTaskIds;
    /** As last told to the cells. */
    QStringList m_selectedTaskIds;
    QHash<CellId, CellModel *> m_cells;
    ColumnListModel m_columns;
    SwimLaneListModel m_swimLanes;
};

} // namespace vantrel
