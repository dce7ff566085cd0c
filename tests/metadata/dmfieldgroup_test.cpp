#include "dmcommon/metadata/dmfieldgroup.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "dmcommon/values/dmenumdict.h"

namespace {

using GroupType = DMFieldGroup::GroupType;

TEST(DMFieldGroupTest, DefaultGroupIsAPlainGroupWithEverythingEmpty) {
  const DMFieldGroup group;
  EXPECT_EQ(group.GetType(), GroupType::FieldGroup);
  EXPECT_EQ(group.GetName(), "");
  EXPECT_TRUE(group.GetFieldNames().empty());
  EXPECT_EQ(group.GetLabel(), "");
  EXPECT_EQ(group.GetCountedValue(), "");
}

TEST(DMFieldGroupTest, ConstructorStoresTypeNameMembersLabelAndCountedValue) {
  const DMFieldGroup group(GroupType::MultiDichotomySet, "likes", {"tea", "coffee"}, "Drinks liked",
                           "1");
  EXPECT_EQ(group.GetType(), GroupType::MultiDichotomySet);
  EXPECT_EQ(group.GetName(), "likes");
  EXPECT_EQ(group.GetFieldNames(), (std::vector<std::string>{"tea", "coffee"}));
  EXPECT_EQ(group.GetLabel(), "Drinks liked");
  EXPECT_EQ(group.GetCountedValue(), "1");
}

TEST(DMFieldGroupTest, ConstructorTakesAnEmptyMemberListAsItIs) {
  const DMFieldGroup group(GroupType::SplitGroup, "", {}, "", "");
  EXPECT_EQ(group.GetType(), GroupType::SplitGroup);
  EXPECT_TRUE(group.GetFieldNames().empty());
}

TEST(DMFieldGroupTest, CopiesAndAssignmentsAreIndependentOfTheirSource) {
  auto source = std::make_unique<DMFieldGroup>(GroupType::MultiCategorySet, "set",
                                               std::vector<std::string>{"a"}, "label", "");
  const DMFieldGroup copy(*source);
  DMFieldGroup assigned;
  assigned = *source;
  source.reset();
  for (const DMFieldGroup* group : std::initializer_list<const DMFieldGroup*>{&copy, &assigned}) {
    EXPECT_EQ(group->GetType(), GroupType::MultiCategorySet);
    EXPECT_EQ(group->GetName(), "set");
    EXPECT_EQ(group->GetFieldNames(), std::vector<std::string>{"a"});
    EXPECT_EQ(group->GetLabel(), "label");
    EXPECT_EQ(group->GetCountedValue(), "");
  }
}

TEST(DMFieldGroupTest, GroupTypeTableMapsEveryValueBothWaysWithoutRepeats) {
  const std::vector<std::pair<GroupType, std::string>> rows = {
      {GroupType::FieldGroup, "fieldGroup"},
      {GroupType::MultiCategorySet, "multiCategorySet"},
      {GroupType::MultiDichotomySet, "multiDichotomySet"},
      {GroupType::SplitGroup, "splitGroup"},
  };
  ASSERT_EQ(DMEnumDict::Size(gGroupTypeDict), static_cast<int>(rows.size()));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto value = static_cast<unsigned>(rows[i].first);
    EXPECT_EQ(value, i);
    EXPECT_STREQ(DMEnumDict::TextOfValue(gGroupTypeDict, value), rows[i].second.c_str());
    EXPECT_EQ(DMEnumDict::IndexOfText(gGroupTypeDict, rows[i].second.c_str()), static_cast<int>(i));
  }
  EXPECT_EQ(DMEnumDict::TextOfValue(gGroupTypeDict, 4), nullptr);
  EXPECT_EQ(DMEnumDict::IndexOfText(gGroupTypeDict, "FieldGroup"), -1);
}

}  // namespace
