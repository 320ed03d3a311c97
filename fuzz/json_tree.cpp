// Builds JSON trees from fuzz input through the model's public operations
// (factories, push/append/set/take, dotted paths), then writes, clones and
// compares them, and checks string-to-number conversion against sscanf.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "json/reference.h"
#include "qta/json/json.h"
#include "qta/json/path.h"
#include "qta/json/writer.h"

namespace {

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  bool done() const { return size_ == 0; }
  std::uint8_t byte() {
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }
  std::string text() {
    std::string result;
    for (std::size_t length = byte() % 16; length > 0 && size_ > 0; --length) {
      result.push_back(static_cast<char>(byte()));
    }
    return result;
  }
  // A dotted path of up to five components: short keys, small indexes and
  // empty components (large indexes only measure the allocator).
  std::string path() {
    std::string result;
    for (int count = byte() % 5; count >= 0; --count) {
      const std::uint8_t b = byte();
      if (b % 16 == 2) {
        // an empty component: index 0
      } else if (b & 1) {
        result.push_back(static_cast<char>('a' + b % 3));
      } else {
        result += std::to_string((b >> 1) % 6);
      }
      if (count > 0) result.push_back('.');
    }
    return result;
  }
  double number() {
    std::uint64_t bits = 0;
    for (int i = 0; i < 8; ++i) bits = bits << 8 | byte();
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};

void checkToNumber(const std::string& text) {
  const double ours = qta::JSONString(text).toNumber();
  if (!qta::jsonref::sameNumber(ours, qta::jsonref::scanfNumber(text))) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  std::vector<qta::JSON::root> stack;
  qta::JSON::root document = qta::json::makeObject();
  while (!input.done()) {
    const std::uint8_t op = input.byte();
    qta::JSON::root top;
    if (!stack.empty() && op % 12 >= 5) {
      top = std::move(stack.back());
      stack.pop_back();
    }
    qta::JSON* container = stack.empty() ? nullptr : stack.back().get();
    switch (op % 12) {
      case 0:
        stack.push_back(qta::json::makeNull());
        break;
      case 1:
        stack.push_back(qta::json::makeBoolean(input.byte()));
        break;
      case 2:
        stack.push_back(qta::json::makeNumber(input.number()));
        break;
      case 3: {
        std::string text = input.text();
        checkToNumber(text);
        stack.push_back(qta::json::makeString(text));
        break;
      }
      case 4:
        stack.push_back(op & 0x80 ? qta::json::makeArray() : qta::json::makeObject());
        break;
      case 5:
        if (container) container->push(std::move(top));
        break;
      case 6:
        if (container) container->append(std::move(top));
        break;
      case 7:
        if (container) container->set(input.text(), std::move(top));
        break;
      case 8:
        qta::json::set(document, input.path(), std::move(top));
        break;
      case 9:
        stack.push_back(qta::json::take(*document, input.path()));
        break;
      case 10:
        if (top && top->size() > 0) top->take(input.byte() % top->size());
        stack.push_back(std::move(top));
        break;
      default:
        if (top) qta::json::find(*top, input.path());
        stack.push_back(std::move(top));
        break;
    }
  }
  stack.push_back(std::move(document));
  for (const qta::JSON::root& tree : stack) {
    if (!tree) continue;
    std::string line, lines;
    tree->write(line, -1);
    if (size < 512) tree->write(lines, 0);
    const qta::JSON::root copy = tree->clone();
    const bool hasNaN = line.find("nan") != std::string::npos;
    if (!hasNaN && !qta::json::equal(*copy, *copy->clone())) std::abort();
    (void)tree->join(",");
  }
  return 0;
}
