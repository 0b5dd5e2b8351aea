// Windows wildcards as regular expressions. The translation is a plain text
// replacement; what remains is to read the result with QRegExp's grammar on
// QRegularExpression (PCRE). The two agree on everything a file-name pattern
// holds, except where PCRE accepts what QRegExp refused: stacked quantifiers
// ("x??" is a lazy "x?" to PCRE), braces that are no quantifier, a "]" or "}"
// on its own, and "(?" other than "(?:", "(?=" and "(?!". Such patterns keep
// matching nothing. "{,m}" (QRegExp's "{0,m}") is rewritten for PCRE.
#include "Wildcard.h"

namespace kzplatform {
namespace {

// The index just past the character class that opens at `open`, or -1 when
// it is not closed. A "]" right after "[" or "[^" belongs to the class.
int classEnd(const QString& re, int open)
{
    int i = open + 1;
    if (i < re.size() && re[i] == QLatin1Char('^'))
        ++i;
    if (i < re.size() && re[i] == QLatin1Char(']'))
        ++i;
    for (; i < re.size(); ++i) {
        if (re[i] == QLatin1Char('\\'))
            ++i;
        else if (re[i] == QLatin1Char(']'))
            return i + 1;
    }
    return -1;
}

// Reads "{n}", "{n,}", "{n,m}" or "{,m}" at `open`; appends its PCRE form to
// `out` and returns the index past it, or -1 when it is no quantifier.
int braceQuantifier(const QString& re, int open, QString& out)
{
    int i = open + 1;
    QString low, high;
    while (i < re.size() && re[i].isDigit())
        low += re[i++];
    const bool comma = i < re.size() && re[i] == QLatin1Char(',');
    if (comma)
        ++i;
    while (comma && i < re.size() && re[i].isDigit())
        high += re[i++];
    if (i >= re.size() || re[i] != QLatin1Char('}') || (low.isEmpty() && !comma))
        return -1;
    out += QLatin1Char('{') + (low.isEmpty() ? QStringLiteral("0") : low) + (comma ? QStringLiteral(",") : QString())
           + high + QLatin1Char('}');
    return i + 1;
}

// Writes the expression for PCRE to `out`; false when QRegExp refuses it.
bool pcreFromQRegExp(const QString& re, QString& out)
{
    bool quantifiable = false; // the item before may take a quantifier
    for (int i = 0; i < re.size();) {
        const QChar c = re[i];
        if (c == QLatin1Char('\\')) {
            out += re.mid(i, 2);
            i += 2;
            quantifiable = true;
        } else if (c == QLatin1Char('[')) {
            const int end = classEnd(re, i);
            if (end < 0)
                return false; // unclosed
            out += re.mid(i, end - i);
            i = end;
            quantifiable = true;
        } else if (c == QLatin1Char('*') || c == QLatin1Char('+') || c == QLatin1Char('?') || c == QLatin1Char('{')) {
            if (!quantifiable)
                return false;
            if (c == QLatin1Char('{')) {
                i = braceQuantifier(re, i, out);
                if (i < 0)
                    return false;
            } else {
                out += c;
                ++i;
            }
            quantifiable = false;
        } else if (c == QLatin1Char(']') || c == QLatin1Char('}')) {
            return false;
        } else if (c == QLatin1Char('(')) {
            const QString group = re.mid(i, 3);
            const bool special = group.startsWith(QLatin1String("(?"));
            if (special && group != QLatin1String("(?:") && group != QLatin1String("(?=")
                && group != QLatin1String("(?!"))
                return false;
            out += special ? group : QString(c);
            i += special ? 3 : 1;
            quantifiable = false;
        } else {
            out += c;
            ++i;
            quantifiable = c != QLatin1Char('|');
        }
    }
    return true;
}

} // namespace

QRegularExpression wildcardExpression(const std::string& pattern)
{
    QString expression = QString::fromLocal8Bit(pattern.c_str());
    expression.replace(QStringLiteral("*.*"), QStringLiteral("*"), Qt::CaseSensitive);
    expression.replace(QStringLiteral("$"), QStringLiteral("\\$"), Qt::CaseSensitive);
    expression.replace(QStringLiteral("."), QStringLiteral("\\."), Qt::CaseSensitive);
    expression.replace(QStringLiteral("*"), QStringLiteral(".*"), Qt::CaseSensitive);
    QString pcre;
    if (!pcreFromQRegExp(expression, pcre))
        return QRegularExpression(QStringLiteral("(?!)")); // matches nothing
    // QRegExp's "." took line ends as well.
    return QRegularExpression(QRegularExpression::anchoredPattern(pcre),
                              QRegularExpression::DotMatchesEverythingOption);
}

} // namespace kzplatform
