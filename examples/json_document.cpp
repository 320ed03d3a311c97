// Builds a small JSON document, edits it, copies it and prints it both ways.
#include <iostream>
#include <string>

#include "qta/json/json.h"
#include "qta/json/path.h"
#include "qta/json/writer.h"

int main() {
  using namespace qta::json;

  qta::JSON::root schedule = makeObject();
  schedule->set("channel", makeString("lobby"));
  qta::JSON* items = schedule->set("items", makeArray());
  for (const char* name : {"intro.mp4", "menu.png", "outro.mp4"}) {
    qta::JSON* item = items->push(makeObject());
    item->set("file", makeString(name));
    item->set("seconds", makeNumber(name[0] == 'm' ? 30 : 12.5));
  }

  // A container is reached by its kind: asArray() is null for anything else.
  double seconds = 0;
  if (const qta::JSONArray* list = schedule->get("items")->asArray()) {
    for (const qta::JSON::root& item : *list) seconds += item->get("seconds")->toNumber();
  }
  std::cout << "total seconds: " << seconds << "\n";

  // Paths create what is missing; find never does.
  set(schedule, "player.volume", makeNumber(0.8));
  std::cout << "items: " << find(*schedule, "items")->size()
            << ", second file: " << find(*schedule, "items.1.file")->toString() << "\n";

  // take() leaves a hole; clone() leaves it out of the copy.
  qta::JSON::root removed = take(*schedule, "items.0");
  qta::JSON::root copy = schedule->clone();
  std::cout << "removed " << removed->get("file")->toString() << "; copy has "
            << copy->get("items")->size() << " items, original keeps "
            << schedule->get("items")->size() << " slots\n";

  std::cout << toJSONText(*copy, -1) << "\n" << toJSONText(*copy, 0) << "\n";
  std::cout << "copy equals itself: " << std::boolalpha << equal(*copy, *copy->clone()) << "\n";
  return 0;
}
