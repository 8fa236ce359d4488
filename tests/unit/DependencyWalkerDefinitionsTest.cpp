#include "DependencyWalkerDefinitions.h"

#include "EngineTest.h"

#include <type_traits>

namespace {

using Keywords = testhost::EngineTest;

static_assert(std::has_virtual_destructor_v<DependencyWalkerDefinitions>);

TEST_F(Keywords, are_spelled_as_descriptions_spell_them)
{
    EXPECT_EQ(DependencyWalkerDefinitions::getNodeTypeString(), "Type");
    EXPECT_EQ(DependencyWalkerDefinitions::getNextNodeKeyword(), "Next");
    EXPECT_EQ(DependencyWalkerDefinitions::getCommandKeyword(), "Commands");
    EXPECT_EQ(DependencyWalkerDefinitions::getPrefixRegularExpression(), "RE:");
}

TEST_F(Keywords, are_the_same_object_at_every_call)
{
    EXPECT_EQ(&DependencyWalkerDefinitions::getNodeTypeString(),
              &DependencyWalkerDefinitions::getNodeTypeString());
    EXPECT_EQ(&DependencyWalkerDefinitions::getNextNodeKeyword(),
              &DependencyWalkerDefinitions::getNextNodeKeyword());
    EXPECT_EQ(&DependencyWalkerDefinitions::getCommandKeyword(),
              &DependencyWalkerDefinitions::getCommandKeyword());
    EXPECT_EQ(&DependencyWalkerDefinitions::getPrefixRegularExpression(),
              &DependencyWalkerDefinitions::getPrefixRegularExpression());
}

TEST_F(Keywords, can_be_asked_through_an_object)
{
    const DependencyWalkerDefinitions definitions;

    EXPECT_EQ(definitions.getNodeTypeString(), "Type");
}

} // namespace
