#pragma once

#include <QAbstractListModel>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

namespace tolvenary
{

/// The rows of a menu picker and which of them is chosen. A new set of rows is taken over row by row, so a list that is
/// open keeps its place when rows come and go around it. Thread: main.
class PickerModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the pickers' own models")
    Q_PROPERTY(QVariant selection READ selection WRITE setSelection NOTIFY selectionChanged FINAL)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged FINAL)
    Q_PROPERTY(QString selectedText READ selectedText NOTIFY selectedRowChanged FINAL)
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)
    Q_PROPERTY(QStringList texts READ texts NOTIFY textsChanged FINAL)

  public:
    /// One row: what it stands for, and what it shows. The identity tells rows apart.
    struct Row {
        QString identity;
        QVariant tag;
        QString text;
    };

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    QVariant selection() const { return m_selection; }
    void setSelection(const QVariant &selection);

    /// The first row that stands for the selection; -1 when none does.
    int selectedRow() const { return m_selectedRow; }

    /// The text of the selected row; empty when no row matches.
    QString selectedText() const;

    int count() const { return static_cast<int>(m_rows.size()); }
    QStringList texts() const;

    /// What choosing that row means; no value for the row that stands for no choice.
    Q_INVOKABLE QVariant tag(int row) const;

    /// The row that typing `typed` leads to: the first at or behind `from` whose text begins so, in any case; -1 if
    /// none.
    Q_INVOKABLE int rowBeginningWith(const QString &typed, int from) const;

  Q_SIGNALS:
    void selectionChanged();
    void selectedRowChanged();
    void countChanged();
    void textsChanged();

  protected:
    explicit PickerModel(QObject *parent = nullptr);

    void takeOver(std::vector<Row> rows);

    /// The identity of the row that stands for a selection; nothing when no row could.
    virtual std::optional<QString> identityOf(const QVariant &selection) const = 0;

  private:
    enum Role { TextRole = Qt::DisplayRole, ChosenRole = Qt::UserRole + 1 };

    void removeRowsMissingFrom(const std::vector<Row> &rows);
    void bringInOrder(const std::vector<Row> &rows);
    void updateSelectedRow();

    std::vector<Row> m_rows;
    QVariant m_selection;
    int m_selectedRow = -1;
};

} // namespace tolvenary
