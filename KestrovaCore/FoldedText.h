#pragma once

#include <QByteArray>
#include <QStringView>

namespace kestrova {

/// `text` in the form in which it is searched: canonically composed and with its case folded by the rules of
/// the person's language, as UTF-8. Canonically equivalent texts fold alike; diacritics stay. The case
/// folding is Unicode's full one (CaseFolding.txt, with the Turkic variant of I where it applies).
QByteArray foldedForSearch(QStringView text);

/// A text to look for, folded once.
class SearchTerm {
public:
    explicit SearchTerm(QStringView text) : m_folded(foldedForSearch(text)) {}

    bool isEmpty() const { return m_folded.isEmpty(); }
    /// Whether `folded`, a result of `foldedForSearch`, holds the term as a run of whole characters: a letter
    /// is not found within the same letter under an accent, nor a syllable within one that has a further
    /// final consonant.
    /// The term must not be empty.
    bool isIn(const QByteArray& folded) const;

private:
    QByteArray m_folded;
};

} // namespace kestrova
