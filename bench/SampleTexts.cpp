#include "bench/SampleTexts.h"

#include <array>
#include <random>
#include <span>

namespace kestrova::bench {
namespace {

using Random = std::minstd_rand;

constexpr std::array korean{
    u"회의",           u"자료를",     u"오늘",     u"보내",         u"주시면",     u"확인하고",   u"바로",
    u"답장하겠습니다", u"일정은",     u"다음",     u"주",           u"화요일이고", u"장소는",     u"본사",
    u"삼층입니다",     u"프로젝트",   u"진행",     u"상황을",       u"정리해서",   u"공유합니다", u"문제가",
    u"생기면",         u"연락",       u"바랍니다", u"검토",         u"결과는",     u"첨부한",     u"문서에",
    u"있으며",         u"수정할",     u"부분이",   u"많지",         u"않습니다",   u"감사합니다", u"서버",
    u"설정을",         u"바꾸었더니", u"속도가",   u"빨라졌습니다", u"고객의",     u"의견을",     u"모아서",
    u"다시",           u"살펴봅시다"};
constexpr std::array english{
    u"meeting",       u"notes",    u"Please",    u"send",     u"report",    u"before",  u"Friday",
    u"afternoon",     u"server",   u"returned",  u"an",       u"error",     u"while",   u"parsing",
    u"Configuration", u"file",     u"at",        u"line",     u"forty-two", u"we",      u"should",
    u"review",        u"changes",  u"together",  u"and",      u"decide",    u"whether", u"release",
    u"can",           u"go",       u"out",       u"Tomorrow", u"customer",  u"asked",   u"for",
    u"better",        u"Keyboard", u"shortcuts", u"in",       u"search",    u"field",   u"window"};

QString word(std::span<const char16_t* const> words, Random& random) {
    return QString::fromUtf16(words[random() % words.size()]);
}

} // namespace

QString sampleText(int number) {
    Random random(static_cast<unsigned>(number) + 1);
    const bool isKorean = number % 2 == 0;
    const auto words =
        isKorean ? std::span<const char16_t* const>(korean) : std::span<const char16_t* const>(english);
    QString text = QString::number(number) + u' ';
    const auto frequentFrom = static_cast<qsizetype>(random() % 300);
    bool hasFrequent = false;
    while (text.size() < sampleTextLength) {
        if (!hasFrequent && text.size() > frequentFrom) {
            text += (isKorean ? SampleWord::frequentKorean : SampleWord::frequentEnglish) + u' ';
            hasFrequent = true;
        }
        text += word(words, random) + u' ';
    }
    text.truncate(sampleTextLength);
    if (number % 1000 / 2 == 250) {
        const QString& rare = isKorean ? SampleWord::rareKorean : SampleWord::rareEnglish;
        text.replace(sampleTextLength - rare.size(), rare.size(), rare);
    }
    return text;
}

} // namespace kestrova::bench
