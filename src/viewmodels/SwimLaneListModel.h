#pragma once

#include "foundations/SwimLane.h"
#include "viewmodels/RowListModel.h"

#include <QtQml/qqmlregistration.h>

#include <vector>

namespace vantrel {

/** What a swimlane's header shows beside the swimlane itself. */
struct SwimLaneState
{
    int incompleteCount = 0;
    /** Of all tasks to do on the board, as "37%". */
    QString percentage;
    /** Of the cells, in points at zoom 1. */
    double height = 0.0;
    bool isIsolated = false;
};

/** Everything a swimlane's row shows outside its cells. A value. */
struct SwimLaneContent
{
    Q_GADGET
    QML_VALUE_TYPE(swimLaneContent)
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString icon MEMBER icon CONSTANT)
    Q_PROPERTY(QString color MEMBER color CONSTANT)
    Q_PROPERTY(bool isExpanded MEMBER isExpanded CONSTANT)
    Q_PROPERTY(bool isIsolated MEMBER isIsolated CONSTANT)
    Q_PROPERTY(double height MEMBER height CONSTANT)
    Q_PROPERTY(QString toggleLabel MEMBER toggleLabel CONSTANT)
    Q_PROPERTY(QString workload MEMBER workload CONSTANT)
    Q_PROPERTY(QString workloadColor MEMBER workloadColor CONSTANT)
    Q_PROPERTY(QString workloadHelp MEMBER workloadHelp CONSTANT)
    Q_PROPERTY(QString heightText MEMBER heightText CONSTANT)

public:
    QString id;
    QString name;
    QString icon;
    /** "#RRGGBB"; empty for the text's colour. */
    QString color;
    bool isExpanded = true;
    bool isIsolated = false;
    double height = 0.0;
    QString toggleLabel;
    /** "14 · 46%" */
    QString workload;
    /** "#RRGGBB" from a quarter of all work on; empty below. */
    QString workloadColor;
    QString workloadHelp;
    QString heightText;

    friend bool operator==(const SwimLaneContent &, const SwimLaneContent &) = default;
    friend const QString &rowId(const SwimLaneContent &lane) { return lane.id; }
};

SwimLaneContent swimLaneContent(const SwimLane &lane, const SwimLaneState &state);

/** The swimlanes of the board from the top. Owned by BoardViewModel; GUI thread. */
class SwimLaneListModel : public RowListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the board")
public:
    enum Role { SwimLaneRole = Qt::UserRole };

    using RowListModel::RowListModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    void setSwimLanes(const std::vector<SwimLaneContent> &lanes);

private:
    std::vector<SwimLaneContent> m_lanes;
};

} // namespace vantrel
