#include "driver/report_template.h"

#ifdef QOB_TEMPLATE
// By the assembler, which takes any file at once; a compiler would take an array of bytes for
// seconds.
__asm__(
    ".pushsection .rodata\n"
    "qob_template: .incbin \"" QOB_TEMPLATE
    "\"\n"
    "qob_template_end: .byte 0\n"
    ".popsection\n");
extern "C" const char qob_template[], qob_template_end[];
#endif

namespace qob {

std::string_view page_template() {
#ifdef QOB_TEMPLATE
  return {qob_template, static_cast<std::size_t>(qob_template_end - qob_template)};
#else
  return "";
#endif
}

}  // namespace qob
