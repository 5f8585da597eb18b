// The code of the guide to projects; projects.txt contains what it prints.

#include <tavrin_driver/ProjectValidator.h>
#include <tavrin_platform/XmlNode.h>
#include <cstddef>
#include <iostream>
#include <string>

#include "Sections.h"

namespace {

//! [project]
const std::string text = R"(<currentstate>
  <properties/>
  <systemitems>
    <item majorversion="3" minorversion="1" buildnumber="0" buildrevision="0">
      <id>1</id><name>System</name><type>1</type><itemdata/>
      <subitems>
        <item><id>7</id><name>Hall</name><type>8</type><state/></item>
        <item><id>7</id><name>Light</name><type>12</type><state/></item>
      </subitems>
    </item>
  </systemitems>
  <bindings/>
  <networkbindings/>
  <event_mgr/>
  <variables/>
  <plugins/>
</currentstate>
)";
//! [project]

void Validate() {
  const Section section("validate");
  //! [validate]
  zq::ProjectValidator validator(text);
  if (!validator.valid())
    for (const std::string& message : validator.messages()) std::cout << message << std::endl;
  //! [validate]
}

void Places() {
  const Section section("places");
  zq::ProjectValidator validator(text);
  validator.valid();
  //! [places]
  for (std::size_t i = 0; i < validator.messages().size(); ++i) {
    const zq::XmlPosition& place = validator.places()[i];
    std::cout << "project.xml:" << place.line << ':' << place.column << ": " << validator.messages()[i]
              << '\n';
  }
  //! [places]
}

void Tree() {
  const Section section("tree");
  //! [tree]
  const zq::XmlDocument::Ptr document = zq::CreateXmlDocument(text);
  if (!document) return;
  zq::ProjectValidator validator(document->GetRoot());
  std::cout << std::boolalpha << validator.valid() << '\n';
  //! [tree]
}

void Again() {
  const Section section("again");
  //! [again]
  zq::ProjectValidator validator(text);
  validator.valid();
  std::cout << validator.messages().size() << '\n';
  validator.set(text);  // removes the messages, but keeps the ids
  validator.valid();
  std::cout << validator.messages().size() << '\n';
  //! [again]
}

void Progress() {
  const Section section("progress");
  //! [progress]
  zq::ProjectValidator validator(text);
  std::size_t items = 0;
  validator.setItemObserver([&items] { ++items; });
  validator.valid();
  std::cout << items << " items\n";
  //! [progress]
}

}  // namespace

int main() {
  Validate();
  Places();
  Tree();
  Again();
  Progress();
}
