#pragma once

#include "runtime/Object.h"

#include <functional>

namespace zv {

class PropertyBase;

/// Base class of forms and controls: an object whose members are properties. Each property has a design
/// value, which every load of the form restores.
class PropertyOwner : public Object {
public:
    /// Snapshot: the present values become the design.
    virtual void sealDesign();
    /// Restores the snapshot, without events.
    virtual void restoreDesign();
    /// Lookup by name; nullptr if there is none.
    PropertyBase* findProperty(StringView name) const;

    /// The class's members, then its properties.
    Value invoke(StringView member, Access access, Arguments& arguments) override;

private:
    friend class PropertyBase;
    /// Observer hook: called after a property's value has changed, so that a view can follow.
    virtual void propertyChanged(const PropertyBase& property) = 0;
    std::vector<PropertyBase*> properties_;
};

class PropertyBase {
public:
    PropertyBase(PropertyOwner& owner, StringView name);
    PropertyBase(const PropertyBase&) = delete;
    virtual ~PropertyBase() = default;

    StringView name() const { return name_; }
    virtual Value get() const = 0;
    virtual void let(const Value& value) = 0;

protected:
    PropertyBase& operator=(const PropertyBase&) { return *this; }
    void tellChange() { owner_.propertyChanged(*this); }

private:
    friend class PropertyOwner;
    virtual void seal() = 0;
    virtual void restore() = 0;
    PropertyOwner& owner_;
    StringView name_; ///< Not owned: a literal.
};

/// A property that is read and assigned like a variable. What an assignment does beyond storing (cutting a
/// text, raising an event) is the `assign` rule, which stores with store().
template <class T>
class Property final : public PropertyBase {
public:
    using Assign = std::function<void(const T&)>;
    Property(PropertyOwner& owner, StringView name, T design = {}, Assign assign = nullptr)
        : PropertyBase(owner, name), value_(design), design_(design), assign_(std::move(assign))
    {}

    operator const T&() const { return value_; }
    const T& operator()() const { return value_; }
    Property& operator=(const T& value)
    {
        if (assign_)
            assign_(value);
        else
            store(value);
        return *this;
    }
    Property& operator=(const Property& other) { return *this = other.value_; }
    Property& operator=(const char16_t* text) requires std::same_as<T, String>
    {
        return *this = String(text);
    }
    /// Fails as the conversion does (94 for Null).
    Property& operator=(const Value& value) { return *this = valueTo<T>(value); }

    /// Stores the value and notifies the view, with no other side effect.
    void store(const T& value)
    {
        if (value == value_)
            return;
        value_ = value;
        tellChange();
    }

    Value get() const override { return value_; }
    void let(const Value& value) override { *this = value; }

private:
    void seal() override { design_ = value_; }
    void restore() override { store(design_); }
    T value_;
    T design_;
    Assign assign_;
};

// Explicit instantiation: compiled once, in Property.cpp, and not in each dialog's file.
extern template class Property<String>;
extern template class Property<bool>;
extern template class Property<Integer>;
extern template class Property<Long>;

inline String operator+(const Property<String>& left, StringView right) { return left() + String(right); }

} // namespace zv
