#include "ui/type_ahead.h"

#include <chrono>

namespace tolvenary
{

TypeAhead::TypeAhead(QObject *parent) : QObject(parent)
{
    using namespace std::chrono_literals;
    m_forget.setSingleShot(true);
    m_forget.setInterval(1s);
    connect(&m_forget, &QTimer::timeout, this, [this] { m_typed.clear(); });
}

int TypeAhead::rowFor(const QString &letter, int from)
{
    if (!m_model || !isLetter(letter))
        return from;
    const bool again = m_typed.count(letter, Qt::CaseInsensitive) == m_typed.size();
    m_typed += letter;
    m_forget.start();
    int row = m_model->rowBeginningWith(m_typed, m_typed.size() > 1 ? from : from + 1);
    if (row < 0 && again)
        row = m_model->rowBeginningWith(letter, from + 1);
    return row < 0 ? from : row;
}

bool TypeAhead::isLetter(const QString &text) const
{
    // A space opens the list, unless it stands within a name that is being typed.
    return !text.isEmpty() && text.at(0).isPrint() && (text != QStringLiteral(" ") || !m_typed.isEmpty());
}

} // namespace tolvenary
