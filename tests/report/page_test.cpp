// Data in a page.
#include "report/page.h"

#include <gtest/gtest.h>

#include <string>

namespace qob::test {
namespace {

TEST(Page, HoldsTheDataInItsPlace_AndNoTextEndsTheElement) {
  const std::string head = "<title>/*DATA*/</title><script type=\"application/json\" id=\"data\">";
  const std::string tail = "</script><script>read(\"/*DATA*/\")</script>\n";
  const std::string page =
      page_of(head + "/*DATA*/" + tail, "{\"id\":\"</script><img onerror=1><!--\",\"f\":null}<");
  EXPECT_EQ(page,
            head + "{\"id\":\"\\u003c/script>\\u003cimg onerror=1>\\u003c!--\",\"f\":null}\\u003c" +
                tail);
  EXPECT_EQ(page_of("<p>no place</p>", "{}"), "");
}

}  // namespace
}  // namespace qob::test
