// The commands of kvo. Each adds its options and its manual to the program's command line and runs when it is named.
#ifndef KVO_COMMANDS_H
#define KVO_COMMANDS_H

namespace CLI {
class App;
}

namespace kvo {

void addImportCommand(CLI::App& program);
void addInfoCommand(CLI::App& program);
void addPickCommand(CLI::App& program);
void addPlayCommand(CLI::App& program);
void addRenderCommand(CLI::App& program);

} // namespace kvo

#endif
