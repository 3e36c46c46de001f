#pragma once

#include "ui/crisp_item.h"

#include <QVariantList>

namespace tolvenary
{

/// A symbol known by name, drawn as vectors. One colour paints it plainly; two run over its box from the leading to the
/// trailing edge. An unknown name is an empty box. Thread: main.
class Symbol : public tolvenary::CrispItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged FINAL REQUIRED)
    Q_PROPERTY(QVariantList colors MEMBER m_colors NOTIFY colorsChanged FINAL)
    Q_PROPERTY(bool mirrored MEMBER m_mirrored NOTIFY colorsChanged FINAL)

  public:
    explicit Symbol(QQuickItem *parent = nullptr);

    QString name() const { return m_name; }
    void setName(const QString &name);

  Q_SIGNALS:
    void nameChanged();
    void colorsChanged();

  protected:
    void paint(QPainter &painter) const override;
    qreal bleed() const override { return 1; }

  private:
    QBrush brush() const;

    QString m_name;
    QVariantList m_colors;
    bool m_mirrored = false;
};

} // namespace tolvenary
