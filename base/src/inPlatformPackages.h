#pragma once
// Tags of the platform's own packages. A package of the tool library declares
// a dependency on any of them with InInit<QvInit::base>::getType() and so on.
namespace QvInit {
class base {};
class resmgt {};
class primitives {};
class internalAPI {};
class render {};
class storage {};
class media {};
class pluginAPI {};
class framework {};
class datamgt {};
} // namespace QvInit
