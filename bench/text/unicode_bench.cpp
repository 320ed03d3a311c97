// UTF-8 to UTF-16, UTF-16 to UTF-8, UTF-8 to UTF-32 and the UTF-8 validity
// check beside ICU, utfcpp, glib, iconv and a plain copy, on the text corpora,
// a pure ASCII text and two short 32-byte pieces. Each qta row comes again as
// "qta_dirty": called after code that left the upper halves of the AVX
// registers dirty, which must cost nothing extra. Converters write into a
// buffer allocated once per benchmark, except glib's, which only return newly
// allocated strings. Bytes processed are the UTF-8 size of the corpus in every
// direction, so the MB/s of one corpus compare across directions. Every
// operation is measured on the portable path (AVX2 switched off) too.
#include <benchmark/benchmark.h>
#include <iconv.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench_support.h"
#include "qta/text/unicode.h"
#include "text/cpu_features.h"

#ifdef QTA_HAVE_ICU
#include <unicode/ustring.h>
#include <unicode/utf8.h>
#endif
#ifdef QTA_HAVE_UTFCPP
#include <utf8cpp/utf8.h>
#endif
#ifdef QTA_HAVE_GLIB
#include <glib.h>
#endif

namespace {

template <typename In, typename Out>
using Converter = size_t (*)(std::basic_string_view<In> in, Out* out, size_t capacity);
using Validator = bool (*)(std::string_view in);

template <typename In, typename Out>
struct Impl {
  const char* name;
  Converter<In, Out> run;
};

template <typename In, typename Out>
size_t copyBytes(std::basic_string_view<In> in, Out* out, size_t) {
  std::memcpy(out, in.data(), in.size() * sizeof(In));
  return in.size() * sizeof(In) / sizeof(Out);
}

size_t qta8To16(std::string_view in, char16_t* out, size_t) {
  return qta::text::utf8ToUtf16(in.data(), in.size(), out, false);
}
size_t qta16To8(std::u16string_view in, char* out, size_t) {
  return qta::text::utf16ToUtf8(in.data(), in.size(), out, false);
}
size_t qta8To32(std::string_view in, char32_t* out, size_t) {
  return qta::text::utf8ToUtf32(in.data(), in.size(), out, false);
}
bool qtaValid(std::string_view in) { return qta::text::isValidUtf8(in); }

// The same calls after code that left the upper vector state dirty.
size_t qta8To16Dirty(std::string_view in, char16_t* out, size_t capacity) {
  qtabench::dirtyUpperVectorState();
  return qta8To16(in, out, capacity);
}
size_t qta16To8Dirty(std::u16string_view in, char* out, size_t capacity) {
  qtabench::dirtyUpperVectorState();
  return qta16To8(in, out, capacity);
}
size_t qta8To32Dirty(std::string_view in, char32_t* out, size_t capacity) {
  qtabench::dirtyUpperVectorState();
  return qta8To32(in, out, capacity);
}
bool qtaValidDirty(std::string_view in) {
  qtabench::dirtyUpperVectorState();
  return qtaValid(in);
}

// iconv keeps a conversion state, so each benchmark opens its own descriptor.
template <typename In, typename Out>
class Iconv {
 public:
  Iconv(const char* to, const char* from) : cd_(iconv_open(to, from)) {}
  ~Iconv() {
    if (cd_ != reinterpret_cast<iconv_t>(-1)) iconv_close(cd_);
  }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;

  size_t operator()(std::basic_string_view<In> in, Out* out, size_t capacity) {
    char* src = const_cast<char*>(reinterpret_cast<const char*>(in.data()));
    size_t srcLeft = in.size() * sizeof(In);
    char* dst = reinterpret_cast<char*>(out);
    size_t dstLeft = capacity * sizeof(Out);
    iconv(cd_, &src, &srcLeft, &dst, &dstLeft);
    return (capacity * sizeof(Out) - dstLeft) / sizeof(Out);
  }

 private:
  iconv_t cd_;
};

#ifdef QTA_HAVE_ICU
size_t icu8To16(std::string_view in, char16_t* out, size_t capacity) {
  UErrorCode status = U_ZERO_ERROR;
  int32_t length = 0;
  u_strFromUTF8(out, static_cast<int32_t>(capacity), &length, in.data(),
                static_cast<int32_t>(in.size()), &status);
  return static_cast<size_t>(length);
}
size_t icu16To8(std::u16string_view in, char* out, size_t capacity) {
  UErrorCode status = U_ZERO_ERROR;
  int32_t length = 0;
  u_strToUTF8(out, static_cast<int32_t>(capacity), &length, in.data(),
              static_cast<int32_t>(in.size()), &status);
  return static_cast<size_t>(length);
}
size_t icu8To32(std::string_view in, char32_t* out, size_t) {
  const auto* s = reinterpret_cast<const uint8_t*>(in.data());
  const auto length = static_cast<int32_t>(in.size());
  size_t written = 0;
  for (int32_t i = 0; i < length;) {
    UChar32 c;
    U8_NEXT(s, i, length, c);
    out[written++] = static_cast<char32_t>(c);
  }
  return written;
}
bool icuValid(std::string_view in) {
  const auto* s = reinterpret_cast<const uint8_t*>(in.data());
  const auto length = static_cast<int32_t>(in.size());
  for (int32_t i = 0; i < length;) {
    UChar32 c;
    U8_NEXT(s, i, length, c);
    if (c < 0) return false;
  }
  return true;
}
#endif

#ifdef QTA_HAVE_UTFCPP
size_t utfcpp8To16(std::string_view in, char16_t* out, size_t) {
  return static_cast<size_t>(utf8::utf8to16(in.begin(), in.end(), out) - out);
}
size_t utfcpp16To8(std::u16string_view in, char* out, size_t) {
  return static_cast<size_t>(utf8::utf16to8(in.begin(), in.end(), out) - out);
}
size_t utfcpp8To32(std::string_view in, char32_t* out, size_t) {
  return static_cast<size_t>(utf8::utf8to32(in.begin(), in.end(), out) - out);
}
bool utfcppValid(std::string_view in) { return utf8::is_valid(in.begin(), in.end()); }
#endif

#ifdef QTA_HAVE_GLIB
// glib returns new strings; the copy into the buffer is left out.
template <typename Result, typename Call>
size_t glibConvert(Call call) {
  glong written = 0;
  Result* result = call(&written);
  benchmark::DoNotOptimize(result);
  g_free(result);
  return static_cast<size_t>(written);
}
size_t glib8To16(std::string_view in, char16_t*, size_t) {
  return glibConvert<gunichar2>([&](glong* written) {
    return g_utf8_to_utf16(in.data(), static_cast<glong>(in.size()), nullptr, written, nullptr);
  });
}
size_t glib16To8(std::u16string_view in, char*, size_t) {
  return glibConvert<gchar>([&](glong* written) {
    return g_utf16_to_utf8(reinterpret_cast<const gunichar2*>(in.data()),
                           static_cast<glong>(in.size()), nullptr, written, nullptr);
  });
}
size_t glib8To32(std::string_view in, char32_t*, size_t) {
  return glibConvert<gunichar>([&](glong* written) {
    return g_utf8_to_ucs4_fast(in.data(), static_cast<glong>(in.size()), written);
  });
}
bool glibValid(std::string_view in) {
  return g_utf8_validate_len(in.data(), static_cast<gsize>(in.size()), nullptr);
}
#endif

// A benchmark of one converter on `input`, with the AVX2 kernels on or off.
template <typename In, typename Out, typename Run>
auto conversionBench(std::basic_string<In> input, size_t utf8Bytes, Run run, bool avx2) {
  return [input, utf8Bytes, run, avx2](benchmark::State& state) mutable {
    const size_t capacity = 4 * input.size() + 16;
    const auto buffer = std::make_unique<Out[]>(capacity);
    qta::text::detail::setAvx2Enabled(avx2);
    for (auto _ : state) {
      benchmark::DoNotOptimize(run(input, buffer.get(), capacity));
      benchmark::ClobberMemory();
    }
    qta::text::detail::setAvx2Enabled(true);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * utf8Bytes));
  };
}

// The converters in "<group>/<corpus>/<name>" with every kernel the processor
// has, and the qta and ICU rows again in "<group>_portable/<corpus>/<name>"
// with the AVX2 kernels switched off: the path of processors without AVX2.
template <typename In, typename Out>
void registerConversion(const std::string& group, const std::string& corpus,
                        std::basic_string<In> input, size_t utf8Bytes,
                        const std::vector<Impl<In, Out>>& impls, const char* iconvTo,
                        const char* iconvFrom) {
  const std::string prefix = group + "/" + corpus + "/";
  const std::string portablePrefix = group + "_portable/" + corpus + "/";
  for (const Impl<In, Out>& impl : impls) {
    benchmark::RegisterBenchmark((prefix + impl.name).c_str(),
                                 conversionBench<In, Out>(input, utf8Bytes, impl.run, true));
    const std::string name = impl.name;
    if (name == "qta" || name == "qta_dirty" || name == "icu") {
      benchmark::RegisterBenchmark((portablePrefix + impl.name).c_str(),
                                   conversionBench<In, Out>(input, utf8Bytes, impl.run, false));
    }
  }
  benchmark::RegisterBenchmark((prefix + "iconv").c_str(), [=](benchmark::State& state) {
    auto converter = std::make_shared<Iconv<In, Out>>(iconvTo, iconvFrom);
    conversionBench<In, Out>(
        input, utf8Bytes,
        [converter](std::basic_string_view<In> in, Out* out, size_t capacity) {
          return (*converter)(in, out, capacity);
        },
        true)(state);
  });
}

// The validity check beside its peers, in the group "utf8_validate/<corpus>"
// with every kernel the processor has, and again beside ICU in
// "utf8_validate_portable/<corpus>" with the AVX2 kernels switched off: the
// path of processors without AVX2.
void registerValidation(const std::string& corpus, const std::string& input) {
  std::vector<std::pair<const char*, Validator>> impls = {{"qta", qtaValid},
                                                          {"qta_dirty", qtaValidDirty}};
  std::vector<std::pair<const char*, Validator>> portable = impls;
#ifdef QTA_HAVE_ICU
  impls.push_back({"icu", icuValid});
  portable.push_back({"icu", icuValid});
#endif
#ifdef QTA_HAVE_UTFCPP
  impls.push_back({"utfcpp", utfcppValid});
#endif
#ifdef QTA_HAVE_GLIB
  impls.push_back({"glib", glibValid});
#endif
  const auto registerGroup = [&](const std::string& group, const auto& validators, bool avx2) {
    for (const auto& [name, run] : validators) {
      const std::string full = group + "/" + corpus + "/" + name;
      benchmark::RegisterBenchmark(full.c_str(), [input, run = run, avx2](benchmark::State& state) {
        qta::text::detail::setAvx2Enabled(avx2);
        for (auto _ : state) benchmark::DoNotOptimize(run(input));
        qta::text::detail::setAvx2Enabled(true);
        state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * input.size()));
      });
    }
  };
  registerGroup("utf8_validate", impls, true);
  registerGroup("utf8_validate_portable", portable, false);
}

void registerCorpus(const std::string& corpus, const std::string& utf8) {
  const std::u16string utf16 = qta::text::utf8ToUtf16(utf8);
  std::vector<Impl<char, char16_t>> to16 = {{"qta", qta8To16}, {"qta_dirty", qta8To16Dirty}};
  std::vector<Impl<char16_t, char>> from16 = {{"qta", qta16To8}, {"qta_dirty", qta16To8Dirty}};
  std::vector<Impl<char, char32_t>> to32 = {{"qta", qta8To32}, {"qta_dirty", qta8To32Dirty}};
#ifdef QTA_HAVE_ICU
  to16.push_back({"icu", icu8To16});
  from16.push_back({"icu", icu16To8});
  to32.push_back({"icu", icu8To32});
#endif
#ifdef QTA_HAVE_UTFCPP
  to16.push_back({"utfcpp", utfcpp8To16});
  from16.push_back({"utfcpp", utfcpp16To8});
  to32.push_back({"utfcpp", utfcpp8To32});
#endif
#ifdef QTA_HAVE_GLIB
  to16.push_back({"glib", glib8To16});
  from16.push_back({"glib", glib16To8});
  to32.push_back({"glib", glib8To32});
#endif
  to16.push_back({"memcpy", copyBytes<char, char16_t>});
  from16.push_back({"memcpy", copyBytes<char16_t, char>});
  to32.push_back({"memcpy", copyBytes<char, char32_t>});
  registerConversion(std::string("utf8_to_utf16"), corpus, utf8, utf8.size(), to16, "UTF-16LE",
                     "UTF-8");
  registerConversion(std::string("utf16_to_utf8"), corpus, utf16, utf8.size(), from16, "UTF-8",
                     "UTF-16LE");
  registerConversion(std::string("utf8_to_utf32"), corpus, utf8, utf8.size(), to32, "UTF-32LE",
                     "UTF-8");
  registerValidation(corpus, utf8);
}

// The first `size` bytes of `text` or fewer, ending before a lead byte so that
// no sequence is cut: the size of a JSON key or a short string value.
std::string shortPiece(const std::string& text, size_t size) {
  size_t end = std::min(size, text.size());
  while (end > 0 && end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
    --end;
  }
  return text.substr(0, end);
}

bool registerAll() {
  const std::pair<const char*, const char*> corpora[] = {
      {"english", "wikipedia_mars-english.utf8.txt"},
      {"latin", "Latin-Lipsum.utf8.txt"},
      {"arabic", "Arabic-Lipsum.utf8.txt"},
      {"chinese", "Chinese-Lipsum.utf8.txt"},
      {"emoji", "Emoji-Lipsum.utf8.txt"},
      {"hebrew", "Hebrew-Lipsum.utf8.txt"},
      {"hindi", "Hindi-Lipsum.utf8.txt"},
      {"japanese", "Japanese-Lipsum.utf8.txt"},
      {"korean", "Korean-Lipsum.utf8.txt"},
      {"russian", "Russian-Lipsum.utf8.txt"},
  };
  for (const auto& [name, file] : corpora) {
    const std::string text = qtabench::readCorpus(std::string("text/") + file);
    if (std::string(name) == "english") {
      // Pure ASCII: the English text without its few non-ASCII bytes.
      std::string ascii;
      for (char c : text) {
        if (static_cast<unsigned char>(c) < 0x80) ascii.push_back(c);
      }
      registerCorpus("ascii", ascii);
      registerCorpus("english_32B", shortPiece(text, 32));
    }
    if (std::string(name) == "russian") registerCorpus("russian_32B", shortPiece(text, 32));
    registerCorpus(name, text);
  }
  return true;
}

const bool kRegistered = registerAll();

}  // namespace
