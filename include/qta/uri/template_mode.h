// qta/uri/template_mode.h: the switch for placeholders in URI texts.
//
// With TemplateMode::kOn, a span that starts with "[[" and ends at the next
// "]]" is a placeholder: the parser, the writers and the escaping functions
// copy it verbatim and never split, decode or escape it. An unclosed "[[" is
// ordinary text. With TemplateMode::kOff, "[[" has no meaning.
//
// A plain value with no state; safe everywhere.
#ifndef QTA_URI_TEMPLATE_MODE_H_
#define QTA_URI_TEMPLATE_MODE_H_

namespace qta {

enum class TemplateMode : bool { kOff = false, kOn = true };

}  // namespace qta

#endif  // QTA_URI_TEMPLATE_MODE_H_
