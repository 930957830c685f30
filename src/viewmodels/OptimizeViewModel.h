#pragma once

#include "board/BoardState.h"
#include "viewmodels/CardPreferences.h"
#include "viewmodels/TaskAgeGridModel.h"

#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace vantrel {

class Announcer;

/** One bar of the age histogram, in words. A value. */
struct AgeBar
{
    Q_GADGET
    QML_VALUE_TYPE(ageBar)
    Q_PROPERTY(QString label MEMBER label CONSTANT)
    Q_PROPERTY(QString zone MEMBER zone CONSTANT)
    Q_PROPERTY(int count MEMBER count CONSTANT)
    Q_PROPERTY(QString share MEMBER share CONSTANT)
    Q_PROPERTY(double fraction MEMBER fraction CONSTANT)
    Q_PROPERTY(QString accessibleName MEMBER accessibleName CONSTANT)

public:
    QString label;
    /** The raw value of its AgeZone. */
    QString zone;
    int count = 0;
    QString share;
    /** Of the highest bar, 0 to 1. */
    double fraction = 0.0;
    QString accessibleName;
};

/**
 * The Optimize screen: how old the open tasks of the board are, as a histogram and as a grid of cards that
 * grow with age. Follows the board while it is shown. Ten thousand tasks are analyzed in slices. GUI thread;
 * owned by AppViewModel.
 */
class OptimizeViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(Screen screen READ screen NOTIFY stateChanged)
    Q_PROPERTY(bool hasContent READ hasContent NOTIFY analysisChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY stateChanged)
    Q_PROPERTY(QVariantList bars READ bars NOTIFY analysisChanged)
    Q_PROPERTY(QVariantList zones READ zones CONSTANT)
    Q_PROPERTY(int selectedBucket READ selectedBucket NOTIFY selectedBucketChanged)
    Q_PROPERTY(QString selectedBucketText READ selectedBucketText NOTIFY selectedBucketChanged)
    Q_PROPERTY(QStringList filters READ filters CONSTANT)
    Q_PROPERTY(int filter READ filter WRITE setFilter NOTIFY filterChanged)
    Q_PROPERTY(vantrel::TaskAgeGridModel *grid READ grid CONSTANT)
    Q_PROPERTY(QString selectedTaskId READ selectedTaskId NOTIFY selectionChanged)
    Q_PROPERTY(int currentIndex READ currentIndex NOTIFY selectionChanged)
public:
    /** What stands in the window, the first that holds. */
    enum class Screen { Loading, Error, Empty, Content };
    Q_ENUM(Screen)

    OptimizeViewModel(BoardState &board, const UserDefaults &defaults, const TimeManager &time,
                      NotificationCenter &notifications, Announcer &announcer, Clock &clock,
                      QObject *parent = nullptr);

    /** The screen is shown; analyzes the tasks. */
    Q_INVOKABLE void appear();
    Q_INVOKABLE void disappear() { m_isShown = false; }
    /** Does nothing during an analysis. */
    Q_INVOKABLE void refreshData();
    /** Puts the error screen in place of everything else, until the next analysis. */
    void showError(const QString &message);

    Screen screen() const;
    /** True also while what was there before is analyzed anew. */
    bool hasContent() const { return !m_bars.isEmpty(); }
    QString errorMessage() const { return m_errorMessage.value_or(QString()); }
    /** Of AgeBar, in the order of the buckets. */
    QVariantList bars() const { return m_bars; }
    /** Maps with "zone" and "text", for legends. */
    QVariantList zones() const;

    /** Row of `bars`, -1 for none. */
    int selectedBucket() const { return m_selectedBucket; }
    QString selectedBucketText() const;
    /** Selects the bar and tells of it; a second time takes the selection back. */
    Q_INVOKABLE void toggleBucket(int row);

    /** "All Ages", then the labels of the buckets. */
    QStringList filters() const;
    int filter() const { return m_filter; }
    void setFilter(int filter);

    TaskAgeGridModel *grid() { return &m_grid; }
    QString selectedTaskId() const { return m_selectedTaskId; }
    /** Where the keyboard stands among the cards shown, -1 for nowhere. */
    int currentIndex() const { return m_currentIndex; }
    Q_INVOKABLE void toggleTaskSelection(int index);
    /** True if the key meant something to the grid. */
    Q_INVOKABLE bool handleKey(int key);

Q_SIGNALS:
    void stateChanged();
    void analysisChanged();
    void selectedBucketChanged();
    void filterChanged();
    void selectionChanged();

private:
    /** The board's open tasks at one moment, oldest first. */
    struct Analysis
    {
        std::vector<AgedTask> agedTasks;
        QHash<QString, WorkItemPtr> taskById;
        taskage::TasksByAge tasksByAge;
        std::vector<AgeHistogramDataPoint> histogram;
    };

    void generateAnalytics();
    void followBoard();
    /** Ends with finish() unless another one began meanwhile. */
    QCoro::Task<> analyze();
    QCoro::Task<Analysis> analysisOf(WorkItems tasks);
    void finish(Analysis analysis);
    void showTasks();
    void keepSelectionAmongShown();
    void select(int index);
    void clearSelection();
    /** Only what is on the screen speaks. */
    void say(const QString &text);

    BoardState &m_board;
    Announcer &m_announcer;
    Clock &m_clock;
    CardPreferences m_preferences;
    TaskAgeGridModel m_grid;
    Analysis m_analysis;
    QVariantList m_bars;
    std::optional<QString> m_errorMessage;
    QString m_selectedTaskId;
    int m_currentIndex = -1;
    int m_selectedBucket = -1;
    int m_filter = 0;
    int m_generation = 0;
    bool m_isShown = false;
    bool m_isLoading = false;
};

} // namespace vantrel
