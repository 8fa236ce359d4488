#include "Factory.h"

#include "EngineTest.h"

#include <type_traits>

namespace {

class Shape {
public:
    Shape(int number, QString text) : number(number), text(std::move(text)) {}
    virtual ~Shape() = default;
    virtual QString describe() const { return text + QString::number(number); }

protected:
    int number;
    QString text;
};

class Circle : public Shape {
public:
    using Shape::Shape;
    QString describe() const override { return "circle " + Shape::describe(); }
};

class Square : public Shape {
public:
    using Shape::Shape;
    QString describe() const override { return "square " + Shape::describe(); }
};

using ShapeFactory = VelmarFactories::Factory<Shape, int, const QString&>;

class FactoryTemplate : public testhost::EngineTest {
protected:
    FactoryTemplate() { ShapeFactory::instance().clear(); }

    static QString describe(const QString& key)
    {
        const std::unique_ptr<Shape> shape(ShapeFactory::create(key, 7, "no. "));
        return shape ? shape->describe() : QString();
    }
};

TEST_F(FactoryTemplate, starts_with_an_empty_registry)
{
    using Fresh = VelmarFactories::Factory<Shape, const QString&>;

    EXPECT_TRUE(Fresh::instance().empty());
    EXPECT_EQ(Fresh::instance().max_load_factor(), 1.0F);
    EXPECT_EQ(Fresh::create("circle", "x"), nullptr);
}

TEST_F(FactoryTemplate, creates_what_is_registered_under_the_key_with_the_arguments)
{
    ShapeFactory::registerType<Circle>("circle");
    ShapeFactory::registerType<Square>("square");

    EXPECT_EQ(describe("circle"), "circle no. 7");
    EXPECT_EQ(describe("square"), "square no. 7");
}

TEST_F(FactoryTemplate, creates_a_new_object_at_every_call)
{
    ShapeFactory::registerType<Circle>("circle");

    const std::unique_ptr<Shape> one(ShapeFactory::create("circle", 1, ""));
    const std::unique_ptr<Shape> other(ShapeFactory::create("circle", 1, ""));
    EXPECT_NE(one, other);
}

TEST_F(FactoryTemplate, returns_null_for_keys_that_are_not_registered)
{
    ShapeFactory::registerType<Circle>("circle");

    for (const char* key : {"", "Circle", "CIRCLE", "circle ", "circl", "square"}) {
        EXPECT_EQ(ShapeFactory::create(key, 7, ""), nullptr) << key;
    }
    EXPECT_EQ(ShapeFactory::instance().size(), 1U) << "asking registers nothing";
}

TEST_F(FactoryTemplate, replaces_what_was_registered_under_the_key)
{
    class Counted : public ShapeFactory::AbstractCreator {
    public:
        explicit Counted(int& destroyed) : destroyed(destroyed) {}
        ~Counted() override { ++destroyed; }
        Shape* create(int number, const QString& text) const override
        {
            return new Circle(number, text);
        }

    private:
        int& destroyed;
    };
    int destroyed = 0;
    ShapeFactory::instance()["shape"] = std::make_unique<Counted>(destroyed);
    EXPECT_EQ(describe("shape"), "circle no. 7");

    ShapeFactory::registerType<Square>("shape");

    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(describe("shape"), "square no. 7");
    EXPECT_EQ(ShapeFactory::instance().size(), 1U);
}

TEST_F(FactoryTemplate, keeps_one_registry_for_each_base_and_arguments)
{
    using Other = VelmarFactories::Factory<Shape, int, const QString&, bool>;
    ShapeFactory::registerType<Circle>("circle");

    EXPECT_EQ(&ShapeFactory::instance(), &ShapeFactory::instance());
    EXPECT_TRUE(Other::instance().empty());
}

TEST_F(FactoryTemplate, hashes_keys_alike_in_every_process)
{
    EXPECT_EQ(ShapeFactory::KeyHasher()("CommandNode"), qHash(QString("CommandNode"), 0));
}

static_assert(std::has_virtual_destructor_v<ShapeFactory::AbstractCreator>);
static_assert(std::is_base_of_v<ShapeFactory::AbstractCreator, ShapeFactory::Creator<Circle>>);

} // namespace
