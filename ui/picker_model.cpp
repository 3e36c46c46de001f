#include "ui/picker_model.h"

#include <algorithm>

namespace tolvenary
{

namespace
{

auto withIdentity(const QString &identity)
{
    return [&identity](const PickerModel::Row &row) { return row.identity == identity; };
}

} // namespace

PickerModel::PickerModel(QObject *parent) : QAbstractListModel(parent) {}

int PickerModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant PickerModel::data(const QModelIndex &index, int role) const
{
    if (index.row() < 0 || index.row() >= count())
        return {};
    if (role == TextRole)
        return m_rows[static_cast<std::size_t>(index.row())].text;
    if (role == ChosenRole)
        return index.row() == m_selectedRow;
    return {};
}

QHash<int, QByteArray> PickerModel::roleNames() const
{
    return {{TextRole, "text"}, {ChosenRole, "chosen"}};
}

void PickerModel::setSelection(const QVariant &selection)
{
    if (selection == m_selection)
        return;
    m_selection = selection;
    Q_EMIT selectionChanged();
    updateSelectedRow();
}

QString PickerModel::selectedText() const
{
    return m_selectedRow < 0 ? QString() : m_rows[static_cast<std::size_t>(m_selectedRow)].text;
}

QStringList PickerModel::texts() const
{
    QStringList texts;
    for (const Row &row : m_rows)
        texts.append(row.text);
    return texts;
}

QVariant PickerModel::tag(int row) const
{
    return row >= 0 && row < count() ? m_rows[static_cast<std::size_t>(row)].tag : QVariant();
}

int PickerModel::rowBeginningWith(const QString &typed, int from) const
{
    if (typed.isEmpty())
        return -1;
    for (int step = 0; step < count(); ++step) {
        const int row = (std::max(from, 0) + step) % count();
        if (m_rows[static_cast<std::size_t>(row)].text.startsWith(typed, Qt::CaseInsensitive))
            return row;
    }
    return -1;
}

void PickerModel::takeOver(std::vector<Row> rows)
{
    removeRowsMissingFrom(rows);
    bringInOrder(rows);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (m_rows[i].text == rows[i].text && m_rows[i].tag == rows[i].tag)
            continue;
        m_rows[i] = rows[i];
        Q_EMIT dataChanged(index(static_cast<int>(i)), index(static_cast<int>(i)));
    }
    Q_EMIT countChanged();
    Q_EMIT textsChanged();
    updateSelectedRow();
}

void PickerModel::removeRowsMissingFrom(const std::vector<Row> &rows)
{
    for (int i = count() - 1; i >= 0; --i) {
        const auto place = m_rows.begin() + i;
        if (std::any_of(rows.begin(), rows.end(), withIdentity(place->identity)))
            continue;
        beginRemoveRows({}, i, i);
        m_rows.erase(place);
        endRemoveRows();
    }
}

void PickerModel::bringInOrder(const std::vector<Row> &rows)
{
    for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
        const Row &wanted = rows[static_cast<std::size_t>(i)];
        const auto place = m_rows.begin() + i;
        const auto found = std::find_if(place, m_rows.end(), withIdentity(wanted.identity));
        if (found == m_rows.end()) {
            beginInsertRows({}, i, i);
            m_rows.insert(place, wanted);
            endInsertRows();
        } else if (found != place) {
            const int from = static_cast<int>(found - m_rows.begin());
            beginMoveRows({}, from, from, {}, i);
            std::rotate(place, found, found + 1);
            endMoveRows();
        }
    }
    // Of several rows with one identity, those that the new ones have no room for.
    const int wanted = static_cast<int>(rows.size());
    if (count() == wanted)
        return;
    beginRemoveRows({}, wanted, count() - 1);
    m_rows.resize(rows.size());
    endRemoveRows();
}

void PickerModel::updateSelectedRow()
{
    const std::optional<QString> wanted = identityOf(m_selection);
    const auto found = wanted ? std::find_if(m_rows.begin(), m_rows.end(), withIdentity(*wanted)) : m_rows.end();
    m_selectedRow = found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
    Q_EMIT selectedRowChanged();
    if (!m_rows.empty())
        Q_EMIT dataChanged(index(0), index(count() - 1), {ChosenRole});
}

} // namespace tolvenary
