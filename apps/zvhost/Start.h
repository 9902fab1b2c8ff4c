#pragma once

#include "zvhost/Host.h"

#include <functional>
#include <memory>

class QWidget;

namespace zv::host {

/// Opens the school at a URL, after looking whether the dialogs find there what they need. A school that
/// lacks something, or cannot be opened, fails with a RuntimeError that says what.
std::unique_ptr<Host> openHost(const String& url, const Choices& choices = {});
/// The same before a person: says what goes on, shows why it failed, and returns nothing then.
/// `meanwhile` is done while the school opens.
std::unique_ptr<Host> openHostShown(QWidget* parent, const String& url,
                                    const std::function<void()>& meanwhile = {});
/// Makes a school, empty or with the sample, before a person, and opens it.
std::unique_ptr<Host> createHostShown(QWidget* parent, const String& url, bool sample);
/// A person makes a school or opens one that exists, and is asked until it is done; nothing if it was
/// cancelled.
std::unique_ptr<Host> chooseSchool(QWidget* parent);
/// What the program starts with when it is told no school: the one that was open last, or else a person's
/// choice.
std::unique_ptr<Host> startSchool(const std::function<void()>& meanwhile);

} // namespace zv::host
