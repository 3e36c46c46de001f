#pragma once

#include <QString>
#include <QStringList>

#include <ostream>

// Lets a failed comparison show the text instead of its bytes.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QStringList &texts, std::ostream *out)
{
    *out << '[' << texts.join(", ").toStdString() << ']';
}
