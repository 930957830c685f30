#include "BoardScreen.h"

#include "foundations/OmniFocusTask.h"

#include <array>

namespace vantrel::test {

BoardScreen::BoardScreen(const QMap<QString, QString> &cells)
    : blocking(**this, *store, repository(), notifications),
      view({**this, blocking, notifications, store.defaults, time, announcer, sounds, toasts, desktop.urls,
            desktop.clipboard, DesktopFamily::Mac})
{
    WorkItems tasks;
    for (const QString &ids : cells) {
        for (const QString &id : ids.split(u' ')) {
            WorkItemFields fields;
            fields.id = id;
            fields.name = u"Task " + id;
            fields.creationDate = store.clock.now();
            tasks.push_back(std::make_shared<OmniFocusTask>(fields));
        }
    }
    organize(tasks);
    for (auto cell = cells.begin(); cell != cells.end(); ++cell) {
        for (const QString &id : cell.value().split(u' ')) {
            const CellId target = cellId(cell.key());
            if (target != cellId(QStringLiteral("0"))) {
                (**this).moveTaskWithoutTellingSource(task(id), target.column, target.swimLane);
            }
        }
    }
    advance(2.0);
}

CellId BoardScreen::cellId(const QString &key) const
{
    const std::array columns{todo(), doing(), done()};
    return {key.size() > 1 ? second() : first(), columns.at(static_cast<size_t>(key.back().digitValue()))};
}

CellModel &BoardScreen::model(const QString &key)
{
    const CellId id = cellId(key);
    return *view.cell(id.swimLane.text(), id.column.text());
}

QString BoardScreen::shown(const QString &key)
{
    CellModel &cell = model(key);
    QStringList ids;
    for (int row = 0; row < cell.rowCount(); ++row) {
        ids.append(cell.index(row).data(CellModel::CardRole).value<CardContent>().id);
    }
    return ids.join(u' ');
}

void BoardScreen::select(const QStringList &ids)
{
    (**this).clearSelection();
    for (const QString &id : ids) {
        (**this).selectTask(id, true);
    }
}

} // namespace vantrel::test
