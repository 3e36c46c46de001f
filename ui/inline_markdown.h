#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace tolvenary
{

/// Renders the inline Markdown of the panel's own texts: **strong** and `code`. What is put in for %1 comes from
/// outside and is shown as it stands, whatever marks it holds.
class InlineMarkdown : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

  public:
    explicit InlineMarkdown(QObject *parent = nullptr);

    /// The text as markup for a Text item.
    Q_INVOKABLE static QString markup(const QString &text, const QString &argument = {},
                                      const QString &codeFamily = {});

    /// The text as it is read aloud: without its marks.
    Q_INVOKABLE static QString plain(const QString &text, const QString &argument = {});
};

} // namespace tolvenary
