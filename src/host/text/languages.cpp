#include "host/text/languages.h"

namespace Ombe {
namespace {

constexpr std::string_view kWestern = "windows-1252";
constexpr std::string_view kCentral = "windows-1250 ISO-8859-2 IBM852";
constexpr std::string_view kBaltic = "windows-1257 ISO-8859-13";
constexpr std::string_view kCyrillic = "windows-1251 ISO-8859-5";
constexpr std::string_view kArabic = "windows-1256";

constexpr Language kLanguages[] = {
    // English
    {kWestern, u"éèïçñ", "the you to and that is it of what in we me this do my not for your are"},
    // German
    {kWestern, u"üäöß",
     "ich das nicht ist du sie und es die der wir zu ein mir mit was den hat dich mich"},
    // French
    {kWestern, u"éàèêçôîâùûœïëüæ",
     "je de est pas le vous la tu que un il et les en on une ce dans pour qui moi des ne me du"},
    // Spanish
    {kWestern, u"óíáéñúü",
     "que no de la el es en lo un por me una te los se con para mi bien si pero las su"},
    // Portuguese
    {kWestern, u"ãéçáêóíõúàâôü",
     "que de o eu um para se com uma os do me isso da no por muito ele bem na mas"},
    // Italian
    {kWestern, u"àèìùòé",
     "che non di la il un per sono mi ho una ti si cosa ma lo le con ha del della come"},
    // Dutch
    {kWestern, u"ëéïöüèóá", "ik je het de dat is een niet en van we wat hij zijn in ze op te"},
    // Swedish
    {kWestern, u"äåöéü",
     "jag det att du och inte en vi har som han vad den med kan mig ett om ska dig"},
    // Danish
    {kWestern, u"åøæéü", "jeg det er du ikke at en og har vi til han den hvad med mig der kan dig"},
    // Norwegian
    {kWestern, u"åøæéòô",
     "jeg det er du ikke en og har vi til han den hva med meg som kan deg bare vil"},
    // Finnish
    {kWestern, u"äöåéšž", "on ei se en minun olen mutta niin ja nyt sinun ole kun hyvin"},
    // Icelandic
    {kWestern, u"áðíóéöþúæý", "ekki er en hann og hvar sem til um hef var eru minn"},
    // Catalan
    {kWestern, u"àéèíóòçúïü", "que de la no el es un en una per els amb les em ho si"},
    // Albanian
    {kWestern, u"ëçé", "nuk dhe me do ka ju po ne kam per mire eshte si jam"},
    // Polish
    {kCentral, u"łęąóżśćńź",
     "nie to jest co na do ja tak jak mnie czy ale mam tu ci go za ty po jestem dobrze tego"},
    // Czech
    {kCentral, u"íáěéřýčžšůúťďňó",
     "to je se na ne co tak jsem si jsi ale ty mi jak pro tady by ho jen kde bude"},
    // Slovak
    {kCentral, u"áíčžéýšúľťňôďäóĺŕ",
     "to je sa na nie tak som si ako ale mi ty ma pre ho kde len by bude dobre"},
    // Hungarian
    {kCentral, u"éáöőóíüúű",
     "nem hogy az egy ez van de mi is csak ha meg itt volt most vagy kell nekem"},
    // Romanian
    {kCentral, u"ăîşţâ",
     "nu de ce este la un pe cu am mai sunt ai din asta pentru e bine o te lui ar fost"},
    // Croatian, Serbian, Bosnian
    {kCentral, u"čšžćđ",
     "je da ne se to sam na ti si za li mi smo ja samo su bi ali nije ovo kako"},
    // Slovenian
    {kCentral, u"čšžćđ", "je ne da se sem si in na bi to ti v za pa kaj so ni ste tako kako smo"},
    // Turkish
    {"windows-1254", u"ıüşöçğİâîû", "bir bu ne ve de ben evet sen var bunu benim iyi tamam ama o"},
    // Lithuanian
    {kBaltic, u"ėšųžąįūčę", "ir tai kad ne ar kas tu jis man bet su mes yra labai kaip gerai"},
    // Latvian
    {kBaltic, u"āīēšļņžūčķģ", "ir es un tas ka ne ko uz tu man par kas no bet vai jums labi"},
    // Estonian
    {kBaltic, u"äõüöšž", "on ma ja ei see sa et ta mis oli kui aga siis seda mida me te olen"},
    // Russian
    {"windows-1251 KOI8-R IBM866 ISO-8859-5", u"оеаинтсрвлкмдпуяыьгзбчйхжшюцщэфъё", ""},
    // Ukrainian
    {"windows-1251 KOI8-U", u"оаниівтерслкумдпзьбягйчхцїжюєшщфґ", ""},
    // Bulgarian
    {kCyrillic, u"аоеитнрсвлкдпмзябъугчцхжшюйщфь", ""},
    // Serbian, in Cyrillic letters
    {kCyrillic, u"оаеинрсјтвкдлпмузгбчшцњжћхљђфџ", ""},
    // Macedonian
    {kCyrillic, u"аоеитнрсвклмпдузјгбшчцжхњќфѓѕљџ", ""},
    // Belarusian
    {kCyrillic, u"аінеяроцслкдпмутўвзгбчьыйхжшёюэф", ""},
    // Greek
    {"windows-1253 ISO-8859-7", u"αοιετσνηυρπκμλςίόάέήωθδύγχφώβξζψϊϋΐΰ", ""},
    // Hebrew
    {"windows-1255", u"יוהלאתמרבשנםעדקפחטכגסצןזךףץ", ""},
    // Arabic
    {kArabic, u"المينرتوبهدسعفقكحجةىأشخصطذإئءضثزغظآؤ", ""},
    // Persian
    {kArabic, u"ايرنهدمتوبسشخزكگفچپعقجطصحژغآءئذض", ""},
    // Thai
    {"windows-874", u"านรอกเงมยลวดท่้ีัสต์ะปบคหแจพชขใไุูโถศษผืิึำธฟญณฉซฝภๆ", ""},
    // Japanese
    {"Shift_JIS EUC-JP",
     u"のいにはをたしとがてんかなれでるうっりまこすさらもきくよあそえおみけだめちつどせわろじひばや"
     u"ねほゆべごげぶ"
     u"ンースルトイアクリラ",
     ""},
    // Chinese, simplified and traditional
    {"GB18030", u"的我你是了不在他一有这人们么那来上到说个好就要会去吗没", ""},
    {"Big5", u"的我你是了不在他一有這人們麼那來上到說個好就要會去嗎沒", ""},
    // Korean
    {"windows-949", u"이다는을가고에지어하도한그나의아해요서기리를은네니라대사자시야거게만", ""},
};

}  // namespace

std::span<const Language> languages() { return kLanguages; }

}  // namespace Ombe
