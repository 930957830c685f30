#include "foundations/TaskTransferable.h"
#include "viewmodels/BoardViewModel.h"

namespace vantrel {

namespace {

const QString TextFormat = QStringLiteral("text/plain");

} // namespace

QStringList BoardViewModel::dragFormats()
{
    return {TaskTransferable::ContentType.toString(), TaskTransferable::PortableContentType.toString(),
            TextFormat};
}

int BoardViewModel::draggedTaskCount(const QString &taskId) const
{
    return static_cast<int>(m_drops.draggedTaskIds(taskId).size());
}

QVariantMap BoardViewModel::beginDrag(const QString &taskId)
{
    m_draggedTaskIds = m_drops.draggedTaskIds(taskId);
    refreshCards({CellModel::IsDraggedRole}, m_draggedTaskIds);

    TaskTransferable card{taskId, {}, {}};
    if (const TaskPosition *place = m_services.board.taskPositions().find(taskId)) {
        card.sourceColumnId = place->columnId;
        card.sourceSwimLaneId = place->swimLaneId;
    }
    const QString json = QString::fromUtf8(card.toJson());
    return {{TaskTransferable::ContentType.toString(), json},
            {TaskTransferable::PortableContentType.toString(), json},
            {TextFormat, taskId}};
}

void BoardViewModel::endDrag()
{
    const QStringList ids = std::exchange(m_draggedTaskIds, {});
    refreshCards({CellModel::IsDraggedRole}, ids);
    for (CellModel *cell : std::as_const(m_cells)) {
        cell->setDropRow(-1);
    }
}

std::optional<QString> BoardViewModel::draggedTask(const QVariantMap &offer) const
{
    const std::optional<QString> id =
        m_drops.taskId({offer.value(TaskTransferable::ContentType.toString()).toString().toUtf8(),
                        offer.value(TaskTransferable::PortableContentType.toString()).toString().toUtf8(),
                        offer.value(TextFormat).toString()});
    return id && m_services.board.task(*id) ? id : std::nullopt;
}

bool BoardViewModel::dragOver(CellModel *cell, const QVariantMap &offer, double y)
{
    const std::optional<QString> id = draggedTask(offer);
    cell->setDropRow(id ? m_drops.plan(*id, cell->id(), y).row : -1);
    return id.has_value();
}

void BoardViewModel::dragLeft(CellModel *cell)
{
    cell->setDropRow(-1);
}

bool BoardViewModel::drop(CellModel *cell, const QVariantMap &offer, double y)
{
    const std::optional<QString> id = draggedTask(offer);
    // First, while the cards are where their views know them.
    endDrag();
    if (id) m_drops.drop(*id, cell->id(), y);
    return id.has_value();
}

} // namespace vantrel
