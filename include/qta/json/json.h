// qta/json/json.h: the JSON document model.
//
// A document is a tree of heap nodes of the abstract class JSON, one subclass
// per JSON kind. Ownership: a document is owned by its root (JSON::root, a
// std::unique_ptr<JSON>) and every container owns its children the same way;
// destroying a container destroys its whole subtree. A child slot may be empty
// (a null pointer) after take(); the writer and join() treat such a hole as
// null, and clone() and equal() skip or compare it as documented.
//
// The base class offers every kind's operations as virtual functions with
// harmless defaults, so a caller navigates without casting: a number answers
// members() with an empty map, a string answers size() with 0.
//
// Defaults handed out by reference (members(), elements(), slot() and
// emptySlot() on a kind they do not apply to, slot() past the end of an
// array): the const accessors give process-wide empty values that are const
// and never change. The non-const ones give a scratch value that belongs to
// the calling thread and is emptied each time it is handed out, so a write
// through it reaches no other node and no other thread, and lasts only until
// that thread's next such call (or its exit, which frees it). To change a
// container, ask for it by kind: asObject() and asArray() return null for any
// other kind instead of a stand-in.
//
// Threads: nodes carry no locks. Any number of threads may read (and write out)
// one tree at once; a mutation needs exclusive access to the whole tree. The
// defaults handed out by reference may be used from any thread (see above).
//
// Deep trees: destroying, cloning, writing and comparing do not recurse, so a
// document nested a million levels deep is handled with a normal stack.
#ifndef QTA_JSON_JSON_H_
#define QTA_JSON_JSON_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "qta/export.h"

namespace qta {

class JSONObject;
class JSONArray;

class QTA_EXPORT JSON {
 public:
  // The owning pointer of a node; an empty root stands for "no value".
  using root = std::unique_ptr<JSON>;
  using Members = std::map<std::string, std::unique_ptr<JSON>>;
  using Elements = std::vector<std::unique_ptr<JSON>>;

  enum Type : std::int32_t { Null = 0, Boolean = 1, Number = 2, String = 3, Object = 4, Array = 5 };

  // The kind of this node, set by the constructor and never changed.
  const Type type;

  JSON(const JSON&) = delete;
  JSON& operator=(const JSON&) = delete;
  virtual ~JSON();

  // Truthiness: null false; a boolean its value; a number true unless it is
  // 0, -0 or NaN; a string true unless empty; arrays and objects always true.
  virtual bool toBoolean() const = 0;
  // Null 0, boolean 1 or 0, a number itself, a string scanned as a C-locale
  // "%lg" with only white space after it (empty text 0, anything else NaN);
  // arrays and objects NaN.
  virtual double toNumber() const;
  // "null", "true"/"false", a number as "%.16g" in the C locale, a string's
  // own text, "[object Array]", "[object Object]".
  virtual std::string toString() const = 0;
  // Appends the JSON text of this value to `out`: one line when `indent` < 0,
  // tab-indented lines at depth `indent` otherwise (see qta/json/writer.h).
  virtual void write(std::string& out, int indent) const = 0;
  // A deep copy; empty slots of arrays and objects are left out of the copy.
  virtual root clone() const = 0;

  // Object: the member's value, or null when absent. Other kinds: null.
  virtual const JSON* get(const std::string& key) const;
  virtual JSON* get(const std::string& key);
  // Object: stores `value` under `key`, deleting a value already there, and
  // returns the stored pointer. Other kinds destroy `value` and return null.
  virtual JSON* set(const std::string& key, root value);
  // Object: erases the member when present. Other kinds: nothing.
  virtual void remove(const std::string& key);
  // Array: its length; object: its member count; other kinds 0.
  virtual std::size_t size() const;
  // Array: the element at `index`. Other kinds, and an index past the end: null.
  virtual const JSON* at(std::size_t index) const;
  virtual JSON* at(std::size_t index);
  // Array: moves the element at `index` out and leaves an empty slot; the
  // length does not change. Other kinds, and an index past the end: an empty
  // root.
  virtual root take(std::size_t index);
  // Object: moves the member's value out and erases the member (an absent key
  // gives an empty root). Other kinds: an empty root.
  virtual root take(const std::string& key);
  // Array: the owning slot at `index`. Other kinds, and an index past the end:
  // the calling thread's scratch root, emptied (see above).
  virtual root& slot(std::size_t index);
  // The calling thread's scratch root, emptied, for every kind: a stand-in
  // slot for code that needs a root reference where a node has none to offer.
  virtual root& emptySlot();
  // Array: appends `value` (capacity doubles, starting at one element) and
  // returns it. Other kinds destroy `value` and return null.
  virtual JSON* push(root value);
  // Array: when `value` is an array, moves its elements to the end of this one
  // and deletes the emptied argument; otherwise appends `value` as one element.
  // Other kinds destroy `value`.
  virtual void append(root value);
  // Array and object: no children. Every other kind: true.
  virtual bool empty() const;
  // Array: reverses the order of the elements. Other kinds: nothing.
  virtual void reverse();
  // Object: its own map. Other kinds: the read-only empty map (const), or the
  // calling thread's scratch map, emptied (non-const; see above).
  virtual const Members& members() const;
  virtual Members& members();
  // The same map, read-only even on a mutable node.
  virtual const Members& constMembers() const;
  // Array: its own vector. Other kinds: the read-only empty vector (const), or
  // the calling thread's scratch vector, emptied (non-const; see above).
  virtual const Elements& elements() const;
  virtual Elements& elements();
  // Array: the toString() of each element with `separator` between them (an
  // empty slot gives "null"). Other kinds: empty text.
  virtual std::string join(const std::string& separator) const;

  // Node memory: each thread takes the nodes it makes from 64 KiB blocks of
  // its own, and a block returns to the heap once all its nodes are deleted
  // (on any thread). A few nodes kept from a large document therefore keep
  // their blocks; clone() them to let the blocks go.
  static void* operator new(std::size_t size);
  static void operator delete(void* node, std::size_t size) noexcept;

  // This node as an object or an array, or null when it is another kind: the
  // way to reach a container's own map or vector without a stand-in.
  JSONObject* asObject();
  const JSONObject* asObject() const;
  JSONArray* asArray();
  const JSONArray* asArray() const;

 protected:
  explicit JSON(Type kind) : type(kind) {}
};

class QTA_EXPORT JSONNull final : public JSON {
 public:
  JSONNull() : JSON(Null) {}
  ~JSONNull() override;
  bool toBoolean() const override;
  double toNumber() const override;
  std::string toString() const override;
  void write(std::string& out, int indent) const override;
  root clone() const override;
};

class QTA_EXPORT JSONBoolean final : public JSON {
 public:
  // Any non-zero `value` is true.
  explicit JSONBoolean(int value) : JSON(Boolean), value(value != 0) {}
  ~JSONBoolean() override;
  bool toBoolean() const override;
  double toNumber() const override;
  std::string toString() const override;
  void write(std::string& out, int indent) const override;
  root clone() const override;

  bool value;
};

class QTA_EXPORT JSONNumber final : public JSON {
 public:
  explicit JSONNumber(double value) : JSON(Number), value(value) {}
  ~JSONNumber() override;
  bool toBoolean() const override;
  double toNumber() const override;
  std::string toString() const override;
  void write(std::string& out, int indent) const override;
  root clone() const override;

  double value;
};

// The text is the std::string base (UTF-8 bytes, not validated). Names that
// both bases define (size, empty, at, append) are ambiguous on a JSONString:
// call them through JSON& for the JSON meaning or text() for the string one.
class QTA_EXPORT JSONString final : public JSON, public std::string {
 public:
  explicit JSONString(const std::string& text) : JSON(String), std::string(text) {}
  explicit JSONString(std::string&& text) : JSON(String), std::string(std::move(text)) {}
  ~JSONString() override;
  bool toBoolean() const override;
  double toNumber() const override;
  std::string toString() const override;
  void write(std::string& out, int indent) const override;
  root clone() const override;

  const std::string& text() const { return *this; }
  std::string& text() { return *this; }
};

// Members are ordered by byte-wise comparison of their keys.
class QTA_EXPORT JSONObject final : public JSON, public JSON::Members {
 public:
  JSONObject() : JSON(Object) {}
  // Detaches nested containers onto a work list instead of recursing.
  ~JSONObject() override;
  bool toBoolean() const override;
  std::string toString() const override;
  void write(std::string& out, int indent) const override;
  root clone() const override;
  using JSON::get;
  const JSON* get(const std::string& key) const override;
  JSON* get(const std::string& key) override;
  JSON* set(const std::string& key, root value) override;
  void remove(const std::string& key) override;
  std::size_t size() const override;
  using JSON::take;
  root take(const std::string& key) override;
  bool empty() const override;
  const Members& members() const override;
  Members& members() override;
  const Members& constMembers() const override;
};

class QTA_EXPORT JSONArray final : public JSON, public JSON::Elements {
 public:
  JSONArray() : JSON(Array) {}
  // Detaches nested containers onto a work list instead of recursing.
  ~JSONArray() override;
  bool toBoolean() const override;
  std::string toString() const override;
  void write(std::string& out, int indent) const override;
  root clone() const override;
  std::size_t size() const override;
  const JSON* at(std::size_t index) const override;
  JSON* at(std::size_t index) override;
  using JSON::take;
  root take(std::size_t index) override;
  root& slot(std::size_t index) override;
  JSON* push(root value) override;
  void append(root value) override;
  bool empty() const override;
  void reverse() override;
  const Elements& elements() const override;
  Elements& elements() override;
  std::string join(const std::string& separator) const override;
};

inline JSONObject* JSON::asObject() {
  return type == Object ? static_cast<JSONObject*>(this) : nullptr;
}
inline const JSONObject* JSON::asObject() const {
  return type == Object ? static_cast<const JSONObject*>(this) : nullptr;
}
inline JSONArray* JSON::asArray() {
  return type == Array ? static_cast<JSONArray*>(this) : nullptr;
}
inline const JSONArray* JSON::asArray() const {
  return type == Array ? static_cast<const JSONArray*>(this) : nullptr;
}

namespace json {

// Factories: each returns a new node that the caller owns.
QTA_EXPORT JSON::root makeNull();
QTA_EXPORT JSON::root makeBoolean(int value);  // non-zero is true
QTA_EXPORT JSON::root makeNumber(double value);
QTA_EXPORT JSON::root makeString(const std::string& text);
QTA_EXPORT JSON::root makeArray();
QTA_EXPORT JSON::root makeObject();

// Deep equality: same kinds, numbers equal as doubles (so NaN differs from
// itself and 0 equals -0), same bytes, same keys, same elements in order. Two
// empty slots are equal; an empty slot differs from any value. Iterative.
QTA_EXPORT bool equal(const JSON& a, const JSON& b);

}  // namespace json
}  // namespace qta

#endif  // QTA_JSON_JSON_H_
