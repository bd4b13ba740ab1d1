#include "media/Language.h"

#include <cctype>
#include <string_view>

namespace quiravent::desktop {

namespace {

/// Two-letter codes (ISO 639-1) with those of ISO 639-2/T.
constexpr std::string_view kTwoLetters =
    "aa=aar ab=abk ae=ave af=afr ak=aka am=amh an=arg ar=ara as=asm av=ava ay=aym az=aze "
    "ba=bak be=bel bg=bul bi=bis bm=bam bn=ben bo=bod br=bre bs=bos ca=cat ce=che ch=cha "
    "co=cos cr=cre cs=ces cu=chu cv=chv cy=cym da=dan de=deu dv=div dz=dzo ee=ewe el=ell "
    "en=eng eo=epo es=spa et=est eu=eus fa=fas ff=ful fi=fin fj=fij fo=fao fr=fra fy=fry "
    "ga=gle gd=gla gl=glg gn=grn gu=guj gv=glv ha=hau he=heb hi=hin ho=hmo hr=hrv ht=hat "
    "hu=hun hy=hye hz=her ia=ina id=ind ie=ile ig=ibo ii=iii ik=ipk io=ido is=isl it=ita "
    "iu=iku ja=jpn jv=jav ka=kat kg=kon ki=kik kj=kua kk=kaz kl=kal km=khm kn=kan ko=kor "
    "kr=kau ks=kas ku=kur kv=kom kw=cor ky=kir la=lat lb=ltz lg=lug li=lim ln=lin lo=lao "
    "lt=lit lu=lub lv=lav mg=mlg mh=mah mi=mri mk=mkd ml=mal mn=mon mr=mar ms=msa mt=mlt "
    "my=mya na=nau nb=nob nd=nde ne=nep ng=ndo nl=nld nn=nno no=nor nr=nbl nv=nav ny=nya "
    "oc=oci oj=oji om=orm or=ori os=oss pa=pan pi=pli pl=pol ps=pus pt=por qu=que rm=roh "
    "rn=run ro=ron ru=rus rw=kin sa=san sc=srd sd=snd se=sme sg=sag si=sin sk=slk sl=slv "
    "sm=smo sn=sna so=som sq=sqi sr=srp ss=ssw st=sot su=sun sv=swe sw=swa ta=tam te=tel "
    "tg=tgk th=tha ti=tir tk=tuk tl=tgl tn=tsn to=ton tr=tur ts=tso tt=tat tw=twi ty=tah "
    "ug=uig uk=ukr ur=urd uz=uzb ve=ven vi=vie vo=vol wa=wln wo=wol xh=xho yi=yid yo=yor "
    "za=zha zh=zho zu=zul ";

/// Bibliographic codes (ISO 639-2/B) with the terminology codes of the same languages.
constexpr std::string_view kBibliographic =
    "alb=sqi arm=hye baq=eus bur=mya chi=zho cze=ces dut=nld fre=fra geo=kat ger=deu gre=ell "
    "ice=isl mac=mkd mao=mri may=msa per=fas rum=ron slo=slk tib=bod wel=cym ";

/// The three letters that stand behind a key in a table of "key=abc ".
std::string_view find(std::string_view table, std::string_view key) {
    const size_t entry = key.size() + 5;
    for (size_t at = 0; at < table.size(); at += entry)
        if (table.substr(at, key.size()) == key) return table.substr(at + key.size() + 1, 3);
    return {};
}

}  // namespace

std::string languageCode(const char* tag) {
    std::string letters;
    for (const char* at = tag; at != nullptr && std::isalpha(static_cast<unsigned char>(*at)); ++at)
        letters += static_cast<char>(std::tolower(static_cast<unsigned char>(*at)));
    const std::string_view table = letters.size() == 2 ? kTwoLetters : kBibliographic;
    const std::string_view found =
        letters.size() == 2 || letters.size() == 3 ? find(table, letters) : std::string_view{};
    if (!found.empty()) return std::string(found);
    return letters.size() == 3 ? letters : "und";
}

}  // namespace quiravent::desktop
