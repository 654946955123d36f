#include "KestrovaCore/FoldedText.h"

#include "KestrovaCore/SubstringSearch.h"

#include <QLocale>
#include <QString>

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>
#include <unicode/utf8.h>

#include <algorithm>

namespace kestrova {
namespace {

const UChar* icu(QStringView text) {
    return reinterpret_cast<const UChar*>(text.utf16());
}

/// Runs an ICU transformation that reports the size it needs, at first with room for a text that hardly
/// grows.
template<typename Transformation>
QString transformed(QStringView text, Transformation transformation) {
    QString result(text.size() + text.size() / 8 + 8, Qt::Uninitialized);
    for (;;) {
        UErrorCode error = U_ZERO_ERROR;
        const auto size = transformation(reinterpret_cast<UChar*>(result.data()),
                                         static_cast<std::int32_t>(result.size()), &error);
        if (error == U_BUFFER_OVERFLOW_ERROR) {
            result.resize(size);
            continue;
        }
        // Neither composition nor folding can fail for another reason; the text as it stands is still
        // searchable.
        if (U_FAILURE(error))
            return text.toString();
        result.resize(size);
        return result;
    }
}

QString composed(QStringView text) {
    static const UNormalizer2* const nfc = [] {
        UErrorCode error = U_ZERO_ERROR;
        return unorm2_getNFCInstance(&error);
    }();
    UErrorCode error = U_ZERO_ERROR;
    const auto size = static_cast<std::int32_t>(text.size());
    if (unorm2_quickCheck(nfc, icu(text), size, &error) == UNORM_YES)
        return text.toString();
    return transformed(text, [&](UChar* target, std::int32_t room, UErrorCode* failure) {
        return unorm2_normalize(nfc, icu(text), size, target, room, failure);
    });
}

bool dotlessILanguage() {
    static const bool turkic = QLocale::system().language() == QLocale::Turkish ||
                               QLocale::system().language() == QLocale::Azerbaijani;
    return turkic;
}

/// Characters that neither composition nor case folding of a neighbour can touch, and whose own folding is
/// known: ASCII, Hangul syllables and the common ideographs. Most rows hold nothing else.
bool isSimple(QChar character) {
    const auto unit = character.unicode();
    return unit < 0x80 || (unit >= 0xac00 && unit <= 0xd7a3) || (unit >= 0x4e00 && unit <= 0x9fff);
}

QByteArray foldedSimpleText(QStringView text) {
    // All that is not ASCII here takes three bytes.
    const auto ascii =
        std::ranges::count_if(text, [](QChar character) { return character.unicode() < 0x80; });
    QByteArray folded(text.size() * 3 - ascii * 2, Qt::Uninitialized);
    char* out = folded.data();
    for (const QChar character : text) {
        const auto unit = character.unicode();
        if (unit < 0x80) {
            *out++ = static_cast<char>(unit >= u'A' && unit <= u'Z' ? unit + (u'a' - u'A') : unit);
            continue;
        }
        *out++ = static_cast<char>(0xe0 | (unit >> 12));
        *out++ = static_cast<char>(0x80 | ((unit >> 6) & 0x3f));
        *out++ = static_cast<char>(0x80 | (unit & 0x3f));
    }
    return folded;
}

/// Whether `character` belongs to the character before it.
bool continuesCharacter(UChar32 character) {
    const auto syllableType = u_getIntPropertyValue(character, UCHAR_HANGUL_SYLLABLE_TYPE);
    return u_getCombiningClass(character) != 0 || syllableType == U_HST_VOWEL_JAMO ||
           syllableType == U_HST_TRAILING_JAMO;
}

} // namespace

QByteArray foldedForSearch(QStringView text) {
    if (!dotlessILanguage() && std::ranges::all_of(text, isSimple))
        return foldedSimpleText(text);
    const QString canonical = composed(text);
    const auto options = dotlessILanguage() ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT;
    const QString folded = transformed(canonical, [&](UChar* target, std::int32_t room, UErrorCode* failure) {
        return u_strFoldCase(target, room, icu(canonical), static_cast<std::int32_t>(canonical.size()),
                             static_cast<std::uint32_t>(options), failure);
    });
    // Folding can take a composed letter apart.
    QByteArray utf8 = composed(folded).toUtf8();
    utf8.squeeze();
    return utf8;
}

bool SearchTerm::isIn(const QByteArray& folded) const {
    const char* const end = folded.constData() + folded.size();
    const auto length = static_cast<std::size_t>(m_folded.size());
    for (const char* from = folded.constData();;) {
        const char* const hit = findBytes(from, end, m_folded.constData(), length);
        if (!hit)
            return false;
        const char* const behind = hit + length;
        if (behind == end || static_cast<unsigned char>(*behind) < 0x80)
            return true;
        UChar32 next = 0;
        std::int32_t offset = 0;
        U8_NEXT(reinterpret_cast<const std::uint8_t*>(behind), offset,
                static_cast<std::int32_t>(end - behind), next);
        if (!continuesCharacter(next))
            return true;
        from = hit + 1;
    }
}

} // namespace kestrova
