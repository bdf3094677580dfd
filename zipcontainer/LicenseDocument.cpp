// The licence statement's RDF text: the Creative Commons Attribution 3.0
// licence described in the Creative Commons rights vocabulary, written for
// this project from the licence's published terms (share and adapt, also
// commercially, on condition of notice and attribution).
#include "zipcontainer/LicenseDocument.h"

namespace ContainerLicense {

const XmlNS::NamespaceDef kCcNamespace{"cc", "http://creativecommons.org/ns#"};
const XmlNS::QualifiedName kLicenseElement{&kCcNamespace, "License"};

namespace {

constexpr char kDocument[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#"
         xmlns:cc="http://creativecommons.org/ns#"
         xmlns:dc="http://purl.org/dc/elements/1.1/"
         xmlns:dcq="http://purl.org/dc/terms/">
  <cc:License rdf:about="http://creativecommons.org/licenses/by/3.0/">
    <dc:title xml:lang="en">Attribution 3.0 Unported</dc:title>
    <dc:identifier>by</dc:identifier>
    <dcq:hasVersion>3.0</dcq:hasVersion>
    <dc:creator rdf:resource="http://creativecommons.org"/>
    <cc:legalcode rdf:resource="http://creativecommons.org/licenses/by/3.0/legalcode"/>
    <cc:licenseClass rdf:resource="http://creativecommons.org/license/"/>
    <cc:permits rdf:resource="http://creativecommons.org/ns#Reproduction"/>
    <cc:permits rdf:resource="http://creativecommons.org/ns#Distribution"/>
    <cc:permits rdf:resource="http://creativecommons.org/ns#DerivativeWorks"/>
    <cc:requires rdf:resource="http://creativecommons.org/ns#Notice"/>
    <cc:requires rdf:resource="http://creativecommons.org/ns#Attribution"/>
    <dc:description>
      <rdf:Alt>
        <rdf:li xml:lang="x-default">You are free to copy, distribute and transmit the work and to adapt it, also for commercial purposes, provided that you attribute the work in the manner specified by the author or licensor (but not in any way that suggests that they endorse you or your use of the work) and keep intact all notices that refer to this licence.</rdf:li>
        <rdf:li xml:lang="en">You are free to copy, distribute and transmit the work and to adapt it, also for commercial purposes, provided that you attribute the work in the manner specified by the author or licensor (but not in any way that suggests that they endorse you or your use of the work) and keep intact all notices that refer to this licence.</rdf:li>
        <rdf:li xml:lang="de">Sie dürfen das Werk vervielfältigen, verbreiten und öffentlich zugänglich machen sowie Bearbeitungen anfertigen, auch zu kommerziellen Zwecken, sofern Sie den Namen des Autors oder Rechteinhabers in der von ihm festgelegten Weise nennen (ohne den Eindruck zu erwecken, er unterstütze Sie oder Ihre Nutzung) und alle Hinweise auf diese Lizenz unverändert lassen.</rdf:li>
        <rdf:li xml:lang="fr">Vous êtes libre de reproduire, distribuer et communiquer l’œuvre au public et de la modifier, y compris à des fins commerciales, à condition de l’attribuer de la manière indiquée par l’auteur ou le titulaire des droits (sans suggérer qu’il vous soutient ou approuve votre utilisation) et de conserver intactes toutes les mentions de cette licence.</rdf:li>
        <rdf:li xml:lang="es">Usted es libre de copiar, distribuir y comunicar públicamente la obra y de hacer obras derivadas, también con fines comerciales, siempre que reconozca la autoría de la forma especificada por el autor o el licenciador (sin sugerir que le respalda a usted o el uso que hace de la obra) y mantenga intactos todos los avisos que se refieran a esta licencia.</rdf:li>
        <rdf:li xml:lang="it">Sei libero di riprodurre, distribuire e comunicare al pubblico l’opera e di modificarla, anche a scopi commerciali, a condizione di attribuirne la paternità nei modi indicati dall’autore o dal licenziante (senza suggerire che essi avallino te o il modo in cui usi l’opera) e di mantenere intatte tutte le note che si riferiscono a questa licenza.</rdf:li>
        <rdf:li xml:lang="nl">U bent vrij het werk te kopiëren, te verspreiden en door te geven en het te bewerken, ook voor commerciële doeleinden, mits u de naam van de maker of licentiegever vermeldt op de door hem aangegeven wijze (maar niet zo dat de indruk ontstaat dat hij u of uw gebruik van het werk steunt) en alle verwijzingen naar deze licentie intact laat.</rdf:li>
      </rdf:Alt>
    </dc:description>
  </cc:License>
  <cc:Permission rdf:about="http://creativecommons.org/ns#Reproduction"><dc:title xml:lang="en">Reproduction</dc:title></cc:Permission>
  <cc:Permission rdf:about="http://creativecommons.org/ns#Distribution"><dc:title xml:lang="en">Distribution</dc:title></cc:Permission>
  <cc:Permission rdf:about="http://creativecommons.org/ns#DerivativeWorks"><dc:title xml:lang="en">Derivative works</dc:title></cc:Permission>
  <cc:Requirement rdf:about="http://creativecommons.org/ns#Notice"><dc:title xml:lang="en">Copyright and licence notices be kept intact</dc:title></cc:Requirement>
  <cc:Requirement rdf:about="http://creativecommons.org/ns#Attribution"><dc:title xml:lang="en">Credit be given to the copyright holder and/or author</dc:title></cc:Requirement>
</rdf:RDF>
)";

}  // namespace

std::string_view Document() { return {kDocument, sizeof kDocument - 1}; }

}  // namespace ContainerLicense
