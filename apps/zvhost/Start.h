#pragma once

#include "zvhost/Host.h"

#include <QStringList>

#include <functional>
#include <memory>

class QWidget;

namespace zv::host {

/// Opens the school at a URL, after the schema check. A school that lacks something, or cannot be opened,
/// fails with a RuntimeError that says what.
std::unique_ptr<Host> openHost(const String& url, const Choices& choices = {});
/// Interactive openHost(): shows progress, reports a failure, and then returns nullptr. `meanwhile` runs
/// while the school opens.
std::unique_ptr<Host> openHostShown(QWidget* parent, const String& url,
                                    const std::function<void()>& meanwhile = {});
/// Interactive: makes a school, empty or with the sample, and opens it.
std::unique_ptr<Host> createHostShown(QWidget* parent, const String& url, bool sample);
/// Interactive loop: a person makes a school or opens one that exists, and is asked until it is done; nullptr
/// if it was cancelled.
std::unique_ptr<Host> chooseSchool(QWidget* parent);
/// URLs of the schools that were opened last, the last one first; those with a password are not among them.
QStringList recentSchools();
/// School to start with when none was named: the one that was open last, or else a person's choice.
std::unique_ptr<Host> startSchool(const std::function<void()>& meanwhile);

} // namespace zv::host
