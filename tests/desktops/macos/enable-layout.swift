// Enables keyboard layouts, and selects the first of them. Not yet run.
//
// usage: swift enable-layout.swift IDENTIFIER…

import Carbon
import Foundation

for (number, identifier) in CommandLine.arguments.dropFirst().enumerated() {
  let properties = [kTISPropertyInputSourceID as String: identifier] as CFDictionary
  let found = TISCreateInputSourceList(properties, true)?.takeRetainedValue() as? [TISInputSource]
  guard let source = found?.first, TISEnableInputSource(source) == noErr else {
    FileHandle.standardError.write("\(identifier) cannot be enabled\n".data(using: .utf8)!)
    exit(1)
  }
  if number == 0 { TISSelectInputSource(source) }
}
